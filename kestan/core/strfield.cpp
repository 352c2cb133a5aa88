#include "kestan/core/strfield.h"

#include "kestan/core/schemaobject.h"

#include <utility>

namespace vorrel::kestan {

bool StrField::IsUndefined(const SchemaObject& object) const {
  return Member<QString>(object).isEmpty() && (object.GetFieldsSpecified() & GetMaskBit()) == 0;
}

void IdField::SetTypedObject(SchemaObject& object, QString value) const {
  Member<QString>(object) = std::move(value);
  object.SetBit(kBitMadeUpId, false);
  object.Rehash();
  NotifyFieldChanged(object);
}

HrefStrField::HrefStrField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                           unsigned flags, unsigned rawOffset)
    : StrField(schema, name, offset, type, flags), rawOffset_(rawOffset) {}

bool HrefStrField::IsUndefined(const SchemaObject&) const { return false; }

} // namespace vorrel::kestan
