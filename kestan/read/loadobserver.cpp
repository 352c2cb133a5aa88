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
#include <array>
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

/// Schemas first, since objects wait for them.
std::array<LoadObserverList*, 2> ListsOf(ThreadContext& context) {
  return {context.schemaLoadObservers.get(), context.styleLoadObservers.get()};
}

LoadObserverList& GetList(ThreadContext& context,
                          std::shared_ptr<LoadObserverList> ThreadContext::*member) {
  std::shared_ptr<LoadObserverList>& list = context.*member;
  if (!list)
    list = std::make_shared<LoadObserverList>();
  return *list;
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
  GetList(*ThreadContext::GetCurrent(), targets.list).Add(*targets.create(object, field, target));
}

void LoadObserver::Wait(const TargetClass& targets, SchemaObject& object, const StrField& field,
                        const KmlId& target) {
  Add(targets, object, field, target);
  // Nobody else brings what is missing in the document itself: unless it follows further down,
  // the reference has failed.
  const bool isOwnDocument = IsOwnDocument(target, object);
  object.SetBit(kBitLoadFailed, isOwnDocument);
  LoadObserverLoader* loader = LoadObserverLoader::GetSingleton();
  if (!loader || isOwnDocument)
    return;
  if (System::IsMainThread() && loader->HasLoadEnded(target.url))
    UpdateAllLater(); // it has come without the target
  else
    loader->RequestLoad(target.url);
}

void LoadObserver::Deliver(std::shared_ptr<LoadObserverList> ThreadContext::*member,
                           SchemaObject& created) {
  ThreadContext& context = *ThreadContext::GetCurrent();
  const KmlId target = created.GetKmlId();
  if (&context != ThreadContext::GetMain() && !target.id.isEmpty())
    GetList(context, member).NoteTarget(target);
  LoadObserverList* const list = (context.*member).get();
  if (!list)
    return;
  const DeletionDeferrer deferrer;
  const StyleClimbBatch batch;
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

bool LoadObserver::TryAll(LoadObserverList* list, const IJobContinuator& continuator) {
  const StyleClimbBatch batch;
  Cache cache;
  while (LoadObserver* observer = list ? list->TakeNext() : nullptr) {
    observer->Update(&cache);
    if (!continuator.ShouldContinue())
      return true;
  }
  return false;
}

void LoadObserver::Rewind(ThreadContext& main) {
  for (LoadObserverList* const list : ListsOf(main)) {
    if (list)
      list->Rewind();
  }
}

bool LoadObserver::IsWalking(ThreadContext& main) {
  const auto lists = ListsOf(main);
  return std::any_of(lists.begin(), lists.end(),
                     [](const LoadObserverList* list) { return list && list->IsWalking(); });
}

/// Goes on with a walk over all; true when it was stopped.
bool LoadObserver::GoOn(ThreadContext& main, const IJobContinuator& continuator) {
  for (LoadObserverList* const list : ListsOf(main)) {
    if (TryAll(list, continuator) && IsWalking(main))
      return true;
  }
  return false;
}

bool LoadObserver::MergeIntoMain(ThreadContext& from, const IJobContinuator& continuator) {
  ThreadContext& main = *ThreadContext::GetMain();
  for (const auto member :
       {&ThreadContext::schemaLoadObservers, &ThreadContext::styleLoadObservers}) {
    const std::shared_ptr<LoadObserverList>& source = from.*member;
    if (source && !GetList(main, member).TakeSome(*source, continuator))
      return true;
  }
  UpdateAllLater(); // the loader may know more by now
  return false;
}

/// Tries those that were open on the main thread when a merge or a document had ended.
class LoadObserver::UpdateJob final : public AbstractJob {
public:
  UpdateJob() : AbstractJob("LoadObserver::UpdateJob") { s_waits_ = true; }
  ~UpdateJob() override { s_waits_ = s_waits_ && isBegun_; }

  static bool IsWaiting() { return s_waits_; }

  Result Run(const IJobContinuator& continuator, IJobContainer&) override {
    ThreadContext& main = *ThreadContext::GetMain();
    if (main.IsMerging())
      return kRunAgain;
    if (!isBegun_)
      Rewind(main);
    isBegun_ = true;
    s_waits_ = false; // what ends from here on wants another job
    return GoOn(main, continuator) ? kRunAgain : kDone;
  }
  bool Abandon() override { return true; }

private:
  bool isBegun_ = false;

  static bool s_waits_;
};

bool LoadObserver::UpdateJob::s_waits_ = false;

void LoadObserver::UpdateAllLater() {
  const ThreadContext& main = *ThreadContext::GetMain();
  const auto isOpen = [](const auto& list) { return list && list->count() > 0; };
  if (LoadObserverLoader::GetSingleton() && !UpdateJob::IsWaiting() &&
      (isOpen(main.styleLoadObservers) || isOpen(main.schemaLoadObservers)))
    GetDefaultJobScheduler().AddJob(new UpdateJob);
}

std::uint64_t LoadObserver::GetExcessSteps(const ThreadContext& context) {
  std::uint64_t steps = context.GetExcessSteps();
  for (const LoadObserverList* const list :
       {context.styleLoadObservers.get(), context.schemaLoadObservers.get()})
    steps += list ? list->GetExcessSteps() : 0;
  return steps;
}

} // namespace vorrel::kestan
