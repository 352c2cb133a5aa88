#pragma once

#include "kestan/core/bitguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/keptvalues.h"

#include <memory>
#include <optional>

namespace vorrel::kestan {

/// What an object holds for a value field beside the value, which goes when the field is set:
/// whether the field counts as given, and what is kept for it.
class FieldRest {
public:
  /// Null where there's nothing that could go.
  static std::unique_ptr<const FieldRest> Copy(const SchemaObject& object, const Field& field);

private:
  friend class FieldRestoration;

  bool isGiven_ = true;
  mmvector<KeptField> kept_;
};

/// Lives while a field is set to what it was before. With a rest, that comes back too, and then
/// observers hear of all of it together.
class FieldRestoration {
public:
  FieldRestoration(SchemaObject& object, const Field& field, const FieldRest* rest);
  FieldRestoration(const FieldRestoration&) = delete;
  FieldRestoration& operator=(const FieldRestoration&) = delete;
  ~FieldRestoration();

private:
  const DeletionDeferrer deferrer_;
  SchemaObject& object_;
  const Field& field_;
  const std::optional<FieldRest> rest_; ///< A copy: who hears of the value may end the other one.
  std::optional<BitGuard> silence_;
};

} // namespace vorrel::kestan
