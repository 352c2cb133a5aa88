#include "kestan/core/strfield.h"

namespace vorrel::kestan {

bool StrField::IsUndefined(const SchemaObject& object) const {
  return Member<QString>(object).isEmpty();
}

HrefStrField::HrefStrField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                           unsigned flags, unsigned rawOffset)
    : StrField(schema, name, offset, type, flags), rawOffset_(rawOffset) {}

bool HrefStrField::IsUndefined(const SchemaObject&) const { return false; }

} // namespace vorrel::kestan
