#include "kestan/core/datetimefield.h"

namespace vorrel::kestan {

bool DateTimeField::IsUndefined(const SchemaObject& object) const {
  return Member<DateTime>(object).isUndefined();
}

} // namespace vorrel::kestan
