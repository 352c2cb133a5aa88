#pragma once

#include "kestan/core/schemaobject.h"

#include <atomic>

namespace vorrel::kestan {

class StyleSelectorSchema;

/// What a feature looks like, or a choice between several looks. Shared by the features that refer
/// to it.
class KESTAN_EXPORT StyleSelector : public SchemaObject {
public:
  using ClassSchema = StyleSelectorSchema;
  static const Schema& GetClassSchema();
  ~StyleSelector() override;

  /// Reports this selector, and those that it leads to, for the output of `state`.
  virtual void InternalCollectStyles(WriteState& state) const = 0;

  /// Raised before each walk over selectors, so that a walk knows where it has been.
  static std::atomic<std::uint32_t> s_get_selected_cycle_counter;

protected:
  StyleSelector(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
