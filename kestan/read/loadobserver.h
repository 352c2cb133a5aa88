#pragma once

#include "kestan/core/kmlid.h"
#include "kestan/host/cellmanagerpool.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"
#include "kestan/host/spinlock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace vorrel {
class IJobContinuator;
}

namespace vorrel::kestan {
class LoadObserver;
class LoadObserverList;
class Schema;
class SchemaObject;
class StrField;
class ThreadContext;
} // namespace vorrel::kestan

namespace vorrel {

template <> struct HashMapTraits<kestan::SchemaObject*, kestan::LoadObserver> {
  static bool Equals(const kestan::LoadObserver& observer, const kestan::SchemaObject* object);
  static bool Equals(const kestan::LoadObserver& a, const kestan::LoadObserver& b);
  static std::uint32_t Hash(const kestan::LoadObserver& observer);
};

template <> struct HashMapTraits<kestan::KmlId, kestan::LoadObserver> {
  static bool Equals(const kestan::LoadObserver& observer, const kestan::KmlId& target);
  static bool Equals(const kestan::LoadObserver& a, const kestan::LoadObserver& b);
  static std::uint32_t Hash(const kestan::LoadObserver& observer);
};

} // namespace vorrel

namespace vorrel::kestan {

/// Cells for observers: a document may hold thousands of open references.
class LoadObserverCellManagerPool final : public CellManagerPool {
public:
  /// The two strings of a target are longer with Qt 6.
  static constexpr std::size_t kCellSize = 128 + 2 * (sizeof(QString) - sizeof(void*));
  LoadObserverCellManagerPool() : CellManagerPool(kCellSize) {}
};

/// An open reference: an object names another one by a URL, and waits for it.
///
/// It ends, once the target is created, found when threads are merged, or known not to come, with
/// `OnUrlLoad` on the waiting object; and silently when that object goes away or refers to
/// something else by then. An object waits for one target at a time.
class KESTAN_EXPORT LoadObserver : public AtomicReferent,
                                   public HashMapEntry<SchemaObject*, LoadObserver>,
                                   public HashMapEntry<KmlId, LoadObserver> {
public:
  /// The last target that was looked for, and what was found. Neighbours often wait for the same.
  using Cache = std::pair<KmlId, RefPtr<SchemaObject>>;

  static void* operator new(std::size_t size);
  static void operator delete(void* cell);
  static LoadObserverCellManagerPool& s_load_observer_mem_mgr();

  /// The library's start and stop.
  static void Initialize();
  static void Shutdown();
  /// Lets the main thread's context hear of new targets; once all schemas exist.
  static void ObserveCreation(ThreadContext& main);

  /// What the object waits for, by whatever field; null when it waits for nothing.
  static LoadObserver* Find(const SchemaObject& object, const StrField& field);
  /// Ends the wait of an object without a word to it.
  static void Cancel(SchemaObject& object);
  /// The same for an object that is being deleted.
  static void NotifyPreDelete(SchemaObject& object) { Cancel(object); }

  /// Moves the open references of a thread that has ended its work to the main context, and tries
  /// them and those that wait there for what the thread has built. True when the continuator
  /// stopped it.
  static bool MergeIntoMain(ThreadContext& from, const IJobContinuator& continuator);
  /// The loader knows of further documents by now: has a job try all that are open, once what waits
  /// to be merged has been merged. The reader asks for it when it has read a document on the main
  /// thread, and so may a client of which the loader knows that a document can't be had. Main
  /// thread; nothing happens without a loader.
  static void UpdateAllLater();

  /// What lookups of ids and references on a thread have cost beyond the usual; grows where ids
  /// were made up to share a place in a hash.
  static std::uint64_t GetExcessSteps(const ThreadContext& context);

  /// One attempt to finish; true when the target was found. Then, and when the target is known not
  /// to come, the observer is gone. The cache may be null.
  virtual bool Update(Cache* cache) = 0;

  const KmlId& GetTarget() const { return target_; }
  SchemaObject* GetObject() const { return object_; }

protected:
  /// What differs between the classes of targets.
  struct TargetClass {
    const Schema& (*schema)();
    std::shared_ptr<LoadObserverList> ThreadContext::*list;
    RefPtr<SchemaObject> (*resolveRoot)(const KmlId& target); ///< A built-in object, or null.
    LoadObserver* (*create)(SchemaObject& object, const StrField& field, const KmlId& target);
  };

  LoadObserver(SchemaObject& object, const StrField& field, const KmlId& target);
  ~LoadObserver() override;

  static RefPtr<SchemaObject> Create(const TargetClass& targets, SchemaObject& object,
                                     const StrField& field);
  /// Goes on with a walk. True when the continuator stopped it.
  static bool TryAll(LoadObserverList* list, const IJobContinuator& continuator);
  /// Hands a new object to those that wait for it on the thread that made it.
  static void Deliver(std::shared_ptr<LoadObserverList> ThreadContext::*list,
                      SchemaObject& created);
  bool Update(const TargetClass& targets, Cache* cache);

private:
  friend class LoadObserverList;

  class UpdateJob;

  using ObjectMap = HashMap<SchemaObject*, LoadObserver>;
  using TargetMap = HashMap<KmlId, LoadObserver>;

  static void Add(const TargetClass& targets, SchemaObject& object, const StrField& field,
                  const KmlId& target);
  static void Wait(const TargetClass& targets, SchemaObject& object, const StrField& field,
                   const KmlId& target);
  static void Rewind(ThreadContext& main);
  static bool IsWalking(ThreadContext& main);
  static bool GoOn(ThreadContext& main, const IJobContinuator& continuator);
  void Detach();
  void Finish(SchemaObject* loaded);

  SchemaObject* object_;
  const StrField* field_;
  KmlId target_;
  LoadObserver* next_ = nullptr;
  LoadObserver* prev_ = nullptr;

  static SpinLock s_lock_;
  static ObjectMap* s_hash_; ///< Under the lock.
};

} // namespace vorrel::kestan
