#pragma once

#include "kestan/core/field.h"

namespace vorrel::kestan {

/// `type` while experimental KML is enabled, else `kHidden`.
KESTAN_EXPORT Field::Type GetExperimentalOverrideField(const Schema& schema, Field::Type type);

/// A field that isn't yet a public part of the language. Its type comes from
/// `GetExperimentalOverrideField`.
template <class F> class ExperimentalField final : public F {
public:
  using F::F;
  bool IsExperimental() const override { return true; }
};

} // namespace vorrel::kestan
