#include "kestan/host/job.h"

#include "kestan/host/pumpqueue.h"
#include "kestan/host/system.h"

namespace vorrel {

namespace {

class DefaultJobScheduler final : public IJobContainer {
public:
  void AddJob(const RefPtr<AbstractJob>& job) override {
    if (job)
      PumpQueue::Get().AddJob(job);
  }
};

} // namespace

IJobContinuator::~IJobContinuator() = default;

IJobContainer::~IJobContainer() = default;

AbstractJob::~AbstractJob() = default;

IJobContainer& GetDefaultJobScheduler() {
  static DefaultJobScheduler scheduler;
  return scheduler;
}

UnrefJob::UnrefJob(RefPtr<const AtomicReferent>&& object)
    : AbstractJob("UnrefJob"), object_(std::move(object)) {}

void UnrefJob::UnrefOnMainImpl(RefPtr<const AtomicReferent>&& object) {
  if (System::IsMainThread())
    object.reset();
  else if (object) // moved, so that this thread never holds the last reference
    GetDefaultJobScheduler().AddJob(new UnrefJob(std::move(object)));
}

AbstractJob::Result UnrefJob::Run(const IJobContinuator&, IJobContainer&) {
  object_.reset();
  return kDone;
}

bool UnrefJob::Abandon() {
  object_.reset();
  return true;
}

} // namespace vorrel
