#include "kestan/read/loadobserver.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/strfield.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/job.h"
#include "kestan/read/loadobserverlist.h"
#include "kestan/read/loadobserverloader.h"
#include "kestan/style/styleclimbbatch.h" // many references may end in one style

#include <algorithm>
#include <mutex>

namespace vorrel {

using kestan::KmlId;
using kestan::LoadObserver;
using kestan::SchemaObject;

bool HashMapTraits<SchemaObject*, LoadObserver>::Equals(const LoadObserver& observer,
                                                        const SchemaObject* object) {
  return observer.GetObject() == object;
}

bool HashMapTraits<SchemaObject*, LoadObserver>::Equals(const LoadObserver& a,
                                                        const LoadObserver& b) {
  return a.GetObject() == b.GetObject();
}

std::uint32_t HashMapTraits<SchemaObject*, LoadObserver>::Hash(const LoadObserver& observer) {
  return hash<SchemaObject*>()(observer.GetObject());
}

bool HashMapTraits<KmlId, LoadObserver>::Equals(const LoadObserver& observer, const KmlId& target) {
  return observer.GetTarget() == target;
}

bool HashMapTraits<KmlId, LoadObserver>::Equals(const LoadObserver& a, const LoadObserver& b) {
  return a.GetTarget() == b.GetTarget();
}

std::uint32_t HashMapTraits<KmlId, LoadObserver>::Hash(const LoadObserver& observer) {
  return hash<KmlId>()(observer.GetTarget());
}

} // namespace vorrel

namespace vorrel::kestan {

SpinLock LoadObserver::s_lock_;
LoadObserver::ObjectMap* LoadObserver::s_hash_ = nullptr;

namespace {

constexpr unsigned kLog2MinimumBuckets = 4;

/// The object that is there under `target`, when it's of the class.
RefPtr<SchemaObject> FindTarget(const KmlId& target, const Schema& schema) {
  SchemaObject* found = SchemaObject::find(target);
  return RefPtr<SchemaObject>(found && found->isOfType(schema) ? found : nullptr);
}

KmlId GetReference(const SchemaObject& object, const StrField& field) {
  return SchemaObject::MakeAbsoluteId(object.GetBaseUrl(), field.get(object));
}

bool IsOwnDocument(const KmlId& target, const SchemaObject& object) {
  return target.url == object.GetUrl() || target.url == object.GetBaseUrl();
}

/// True while a document is read that the object was there before: an earlier reading of the same
/// document, or the document that a part is read for.
bool IsFromBefore(const SchemaObject& object) {
  const std::uint32_t begun = ThreadContext::GetCurrent()->parseRevision;
  return begun != 0 && static_cast<std::int32_t>(object.GetRevision() - begun) < 0;
}

bool IsBuiltIn(const KmlId& target) {
  return target.url.startsWith(QLatin1String("root://"), Qt::CaseInsensitive);
}

} // namespace

LoadObserverCellManagerPool& LoadObserver::s_load_observer_mem_mgr() {
  static LoadObserverCellManagerPool pool;
  return pool;
}

void* LoadObserver::operator new(std::size_t) { return s_load_observer_mem_mgr().allocate(); }

void LoadObserver::operator delete(void* cell) { s_load_observer_mem_mgr().free(cell); }

void LoadObserver::Initialize() { s_hash_ = new ObjectMap(kLog2MinimumBuckets); }

void LoadObserver::Shutdown() {
  delete s_hash_;
  s_hash_ = nullptr;
}

LoadObserver::LoadObserver(SchemaObject& object, const StrField& field, const KmlId& target)
    : object_(&object), field_(&field), target_(target) {
  object.SetBit(kBitHasLoadObserver, true);
  ref(); // the hash entry's
  const std::lock_guard<SpinLock> guard(s_lock_);
  s_hash_->insert(*this);
}

LoadObserver::~LoadObserver() = default;

LoadObserver* LoadObserver::Find(const SchemaObject& object, const StrField&) {
  if (!object.GetBit(kBitHasLoadObserver))
    return nullptr;
  const std::lock_guard<SpinLock> guard(s_lock_);
  return s_hash_->find(const_cast<SchemaObject*>(&object));
}

void LoadObserver::Detach() {
  object_->SetBit(kBitHasLoadObserver, false);
  if (LoadObserverList* list = LoadObserverList::Find(*this))
    list->Remove(*this);
  const std::lock_guard<SpinLock> guard(s_lock_);
  s_hash_->erase(*this);
}

void LoadObserver::Cancel(SchemaObject& object) {
  if (!object.GetBit(kBitHasLoadObserver))
    return;
  LoadObserver* observer = nullptr;
  {
    const std::lock_guard<SpinLock> guard(s_lock_);
    observer = s_hash_->find(&object);
  }
  if (!observer)
    return;
  observer->Detach();
  observer->unref();
}

void LoadObserver::Finish(SchemaObject* loaded) {
  // The observer goes first: the object may ask for something else while it's told.
  const DeletionDeferrer deferrer;
  SchemaObject& object = *object_;
  const StrField& field = *field_;
  const bool isCurrent = GetReference(object, field) == target_;
  Detach();
  unref();
  if (!isCurrent)
    return;
  object.SetBit(kBitLoadFailed, false);
  object.OnUrlLoad(field, loaded);
}

RefPtr<SchemaObject> LoadObserver::Create(const TargetClass& targets, SchemaObject& object,
                                          const StrField& field) {
  if (object.GetBit(kBitDeleting))
    return {};
  const DeletionDeferrer deferrer;
  if (field.get(object).isEmpty()) {
    Cancel(object);
    object.OnUrlLoad(field, nullptr);
    return {};
  }
  const KmlId target = GetReference(object, field);
  RefPtr<SchemaObject> found = FindTarget(target, targets.schema());
  const LoadObserver* const waiting = Find(object, field);
  if (waiting && !found && waiting->target_ == target)
    return {}; // asked for already
  Cancel(object);
  const bool isBuiltIn = IsBuiltIn(target);
  if (!found && isBuiltIn && !target.id.isEmpty())
    found = targets.resolveRoot(target);
  // What follows further down in the document counts for more than what was there before.
  if (found && !isBuiltIn && IsOwnDocument(target, object) && IsFromBefore(*found))
    Add(targets, object, field, target);
  if (found || isBuiltIn || target.id.isEmpty())
    object.OnUrlLoad(field, found.get());
  else
    Wait(targets, object, field, target);
  return found;
}

void LoadObserver::Add(const TargetClass& targets, SchemaObject& object, const StrField& field,
                       const KmlId& target) {
  std::unique_ptr<LoadObserverList>& list = ThreadContext::GetCurrent()->*targets.list;
  if (!list)
    list = std::make_unique<LoadObserverList>();
  list->Add(*targets.create(object, field, target));
}

void LoadObserver::Wait(const TargetClass& targets, SchemaObject& object, const StrField& field,
                        const KmlId& target) {
  Add(targets, object, field, target);
  // Nobody else brings what is missing in the document itself: unless it follows further down,
  // the reference has failed.
  const bool isOwnDocument = IsOwnDocument(target, object);
  object.SetBit(kBitLoadFailed, isOwnDocument);
  LoadObserverLoader* loader = LoadObserverLoader::GetSingleton();
  if (loader && !isOwnDocument)
    loader->RequestLoad(target.url);
}

void LoadObserver::Deliver(LoadObserverList* list, SchemaObject& created) {
  if (!list)
    return;
  const DeletionDeferrer deferrer;
  const StyleClimbBatch batch;
  const KmlId target = created.GetKmlId();
  // An object that waits for the same again, while it's told, isn't told again.
  for (std::size_t left = list->count(); left > 0; --left) {
    LoadObserver* observer = list->find(target);
    if (!observer || created.GetBit(kBitDeleting))
      return;
    observer->Finish(&created);
  }
}

bool LoadObserver::Update(const TargetClass& targets, Cache* cache) {
  RefPtr<SchemaObject> found;
  if (cache && cache->first == target_) {
    found = cache->second;
  } else {
    found = FindTarget(target_, targets.schema());
    if (cache)
      *cache = Cache(target_, found);
  }
  if (found) {
    Finish(found.get());
    return true;
  }
  LoadObserverLoader* loader = LoadObserverLoader::GetSingleton();
  if (loader && loader->HasLoadEnded(target_.url))
    Finish(nullptr);
  return false;
}

bool LoadObserver::UpdateAll(LoadObserverList* list, const IJobContinuator& continuator) {
  const StyleClimbBatch batch;
  Cache cache;
  while (LoadObserver* observer = list ? list->TakeNext() : nullptr) {
    observer->Update(&cache);
    if (!continuator.ShouldContinue())
      return true;
  }
  return false;
}

bool LoadObserver::UpdateAll(ThreadContext& main, const IJobContinuator& continuator) {
  LoadObserverList* const lists[] = {main.schemaLoadObservers.get(), main.styleLoadObservers.get()};
  const auto isWalking = [](const LoadObserverList* list) { return list && list->IsWalking(); };
  if (std::none_of(std::begin(lists), std::end(lists), isWalking)) {
    for (LoadObserverList* list : lists) {
      if (list)
        list->Rewind();
    }
  }
  for (LoadObserverList* list : lists) {
    if (UpdateAll(list, continuator) && std::any_of(std::begin(lists), std::end(lists), isWalking))
      return true;
  }
  return false;
}

void LoadObserver::MoveToMain(ThreadContext& from, ThreadContext& main, bool lookAnew) {
  for (const auto member :
       {&ThreadContext::styleLoadObservers, &ThreadContext::schemaLoadObservers}) {
    const std::unique_ptr<LoadObserverList>& source = from.*member;
    std::unique_ptr<LoadObserverList>& target = main.*member;
    if (!target && source)
      target = std::make_unique<LoadObserverList>();
    if (source)
      target->TakeAll(*source);
    if (lookAnew && target)
      target->Rewind();
  }
}

} // namespace vorrel::kestan
