#include "kestan/read/typedloadobserver.h"

#include "kestan/core/threadcontext.h"
#include "kestan/custom/customschema.h" // the two classes
#include "kestan/read/loadobserverlist.h"
#include "kestan/style/styleselector.h" // of targets

namespace vorrel::kestan {

namespace {

// Built-in objects, by class.
RefPtr<SchemaObject> ResolveRoot(const KmlId& id, const StyleSelector*) {
  return StyleSelector::resolve(id);
}
RefPtr<SchemaObject> ResolveRoot(const KmlId&, const CustomSchema*) { return {}; }

std::shared_ptr<LoadObserverList> ThreadContext::*ListOf(const StyleSelector*) {
  return &ThreadContext::styleLoadObservers;
}
std::shared_ptr<LoadObserverList> ThreadContext::*ListOf(const CustomSchema*) {
  return &ThreadContext::schemaLoadObservers;
}

} // namespace

/// Hears of each new object of the class, on the thread that made it.
template <class T>
class TypedLoadObserver<T>::TypedLoadCreationObserver final : public CreationObserver {
public:
  TypedLoadCreationObserver() : CreationObserver(T::GetClassSchema(), kAnyThread) {}

  void OnPostCreate(const Event& event) override { Deliver(kTargets.list, *event.object); }
};

template <class T>
const LoadObserver::TargetClass TypedLoadObserver<T>::kTargets = {
    &T::GetClassSchema, ListOf(static_cast<T*>(nullptr)),
    [](const KmlId& target) { return ResolveRoot(target, static_cast<T*>(nullptr)); },
    &TypedLoadObserver::Make};

template <class T>
LoadObserver* TypedLoadObserver<T>::Make(SchemaObject& object, const StrField& field,
                                         const KmlId& target) {
  static_assert(sizeof(TypedLoadObserver) <= LoadObserverCellManagerPool::kCellSize);
  return new TypedLoadObserver(object, field, target);
}

template <class T>
RefPtr<T> TypedLoadObserver<T>::Create(SchemaObject& object, const StrField& field) {
  return RefPtr<T>(static_cast<T*>(LoadObserver::Create(kTargets, object, field).get()));
}

template <class T>
bool TypedLoadObserver<T>::UpdateAll(LoadObserverList* list, const IJobContinuator& continuator,
                                     AbstractJob*) {
  if (list && !list->IsWalking())
    list->Rewind();
  return TryAll(list, continuator) && list->IsWalking();
}

template <class T> bool TypedLoadObserver<T>::Update(Cache* cache) {
  return LoadObserver::Update(kTargets, cache);
}

void LoadObserver::ObserveCreation(ThreadContext& main) {
  main.styleCreationObserver =
      std::make_unique<TypedLoadObserver<StyleSelector>::TypedLoadCreationObserver>();
  main.schemaCreationObserver =
      std::make_unique<TypedLoadObserver<CustomSchema>::TypedLoadCreationObserver>();
}

template class TypedLoadObserver<StyleSelector>;
template class TypedLoadObserver<CustomSchema>;

} // namespace vorrel::kestan
