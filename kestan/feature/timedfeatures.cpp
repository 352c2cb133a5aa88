#include "kestan/feature/timedfeatures.h"

#include "kestan/core/librarypart.h"
#include "kestan/core/threadcontext.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/host/memory.h"
#include "kestan/host/spinlock.h"

#include <algorithm>
#include <mutex>

namespace vorrel::kestan {

namespace {

using Guard = std::lock_guard<SpinLock>;

SpinLock s_lock;

/// All there are. Under the lock, as what is in them.
mmvector<TimedFeatures*>& GetAll() {
  static mmvector<TimedFeatures*> all;
  return all;
}

TimedFeatures* GetOwn() {
  const ThreadContext* const context = ThreadContext::GetCurrent();
  return context ? context->timedFeatures.get() : nullptr;
}

/// What a folder holds is asked by itself, so that nests of folders aren't walked for each level.
bool WidenBy(const AbstractFeature& feature, DateTime& begin, DateTime& end, int* instants,
             int* spans) {
  return feature.isOfType(AbstractFolder::GetClassSchema())
             ? feature.AbstractFeature::GetTimeRange(begin, end, instants, spans)
             : feature.GetTimeRange(begin, end, instants, spans);
}

class TimedFeaturesPart final : public LibraryPart {
public:
  bool MergeContext(ThreadContext& from, const IJobContinuator&) override {
    TimedFeatures::MergeIntoMain(from);
    return false;
  }
};

TimedFeaturesPart s_part;

} // namespace

TimedFeatures::TimedFeatures() {
  const Guard guard(s_lock);
  GetAll().push_back(this);
}

TimedFeatures::~TimedFeatures() {
  const Guard guard(s_lock);
  mmvector<TimedFeatures*>& all = GetAll();
  all.erase(std::find(all.begin(), all.end(), this));
}

void TimedFeatures::Add(AbstractFeature& feature) {
  ThreadContext* const context = ThreadContext::GetCurrent();
  if (!context)
    return;
  if (!context->timedFeatures)
    context->timedFeatures = std::make_shared<TimedFeatures>();
  const Guard guard(s_lock);
  context->timedFeatures->features_.insert(&feature);
}

void TimedFeatures::Remove(AbstractFeature& feature) {
  TimedFeatures* const own = GetOwn();
  const Guard guard(s_lock);
  if (own && own->features_.contains(&feature)) {
    own->features_.erase(&feature);
    return;
  }
  // A worker that has joined the main thread ends what it built before.
  for (TimedFeatures* const other : GetAll())
    other->features_.erase(&feature);
}

void TimedFeatures::MergeIntoMain(ThreadContext& from) {
  ThreadContext& main = *ThreadContext::GetMain();
  if (!from.timedFeatures)
    return;
  if (main.timedFeatures) {
    const Guard guard(s_lock);
    const PointerSet<AbstractFeature>& moved = from.timedFeatures->features_;
    for (int i = 0; i < moved.size(); ++i)
      main.timedFeatures->features_.insert(moved[i]);
  } else {
    main.timedFeatures.swap(from.timedFeatures);
  }
  from.timedFeatures.reset();
}

bool TimedFeatures::GetRange(DateTime& begin, DateTime& end, int* instants, int* spans) {
  // No lock is held while a feature is asked: what it calls may come back here.
  TimedFeatures* const own = GetOwn();
  const auto get = [own](int index) {
    const Guard guard(s_lock);
    return own && index < own->features_.size() ? own->features_[index] : nullptr;
  };
  bool any = false;
  int index = 0;
  while (const AbstractFeature* const feature = get(index++))
    any = WidenBy(*feature, begin, end, instants, spans) || any;
  return any;
}

} // namespace vorrel::kestan
