#pragma once

#include "kestan/core/creationobserver.h"
#include "kestan/read/loadobserver.h"

namespace vorrel {
class AbstractJob;
}

namespace vorrel::kestan {

class CustomSchema;
class StyleSelector;

/// An open reference to a `T`; an object of another class isn't taken for the target. There are two
/// kinds: to a `StyleSelector` and to a `CustomSchema`.
template <class T> class KESTAN_EXPORT TypedLoadObserver final : public LoadObserver {
public:
  /// Follows the reference that `field` of `object` holds. What is there already goes to
  /// `OnUrlLoad` at once, as does null for a reference that can't lead anywhere; everything else
  /// is waited for, in place of what the object waited for before.
  static RefPtr<T> Create(SchemaObject& object, const StrField& field);

  /// Tries all that are open in the list of a context, which may be null. True when the continuator
  /// stopped it: it goes on there at the next call. `job` is the one that does so, or null.
  static bool UpdateAll(LoadObserverList* list, const IJobContinuator& continuator,
                        AbstractJob* job);

  bool Update(Cache* cache) override;

private:
  friend class LoadObserver;

  class TypedLoadCreationObserver;

  using LoadObserver::LoadObserver;

  static LoadObserver* Make(SchemaObject& object, const StrField& field, const KmlId& target);
  static const TargetClass kTargets;
};

extern template class TypedLoadObserver<StyleSelector>;
extern template class TypedLoadObserver<CustomSchema>;

} // namespace vorrel::kestan
