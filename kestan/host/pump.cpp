#include "kestan/host/pump.h"

#include "kestan/host/pumpqueue.h"
#include "kestan/host/system.h"

#include <utility>

namespace vorrel {

double Pump::Run(double maxSeconds) {
  return System::IsMainThread() ? PumpQueue::Get().Run(maxSeconds) : kIdle;
}

void Pump::SetWaker(std::function<void()> waker) { PumpQueue::Get().SetWaker(std::move(waker)); }

void Pump::Clear() { PumpQueue::Get().Clear(); }

MainThreadWait::MainThreadWait() : isMain_(System::IsMainThread()) {
  if (isMain_)
    PumpQueue::Get().BeginWait();
}

MainThreadWait::~MainThreadWait() {
  if (isMain_)
    PumpQueue::Get().EndWait();
}

PumpTask::~PumpTask() { Unschedule(); }

void PumpTask::Schedule(double delaySeconds, double repeatSeconds) {
  PumpQueue::Get().Schedule(*this, delaySeconds, repeatSeconds);
}

void PumpTask::Unschedule() { PumpQueue::Get().Unschedule(*this); }

bool PumpTask::IsScheduled() const { return PumpQueue::Get().IsScheduled(*this); }

} // namespace vorrel
