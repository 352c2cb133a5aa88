#include "kestan/core/experimentalfield.h"

#include "kestan/core/schema.h"

namespace vorrel::kestan {

Field::Type GetExperimentalOverrideField(const Schema&, Field::Type type) {
  return Schema::GetEnableExperimentalFields() ? type : Field::kHidden;
}

} // namespace vorrel::kestan
