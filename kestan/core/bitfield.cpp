#include "kestan/core/bitfield.h"

#include <cstdint>

namespace vorrel::kestan {

BitField::BitField(Schema& schema, const QString& name, unsigned bitIndex, bool defaultValue,
                   unsigned offset, Field::Type type, unsigned flags)
    : SimpleField(schema, name, offset, type, flags, sizeof(std::uint32_t), alignof(std::uint32_t)),
      mask_(1U << bitIndex) {
  SetDefault(defaultValue);
}

unsigned BitField::getSize() const { return sizeof(std::uint32_t); }

unsigned BitField::GetAlign() const { return alignof(std::uint32_t); }

void BitField::construct(SchemaObject& object) const { Assign(object, GetDefault()); }

void BitField::destruct(SchemaObject&) const {}

bool BitField::get(const SchemaObject& object) const {
  return (Member<std::uint32_t>(object) & mask_) != 0;
}

void BitField::SetTypedObject(SchemaObject& object, bool value) const {
  Assign(object, value);
  NotifyFieldChanged(object);
}

void BitField::Assign(SchemaObject& object, bool value) const {
  std::uint32_t& word = Member<std::uint32_t>(object);
  word = value ? word | mask_ : word & ~mask_;
}

} // namespace vorrel::kestan
