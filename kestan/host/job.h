#pragma once

#include "kestan/host/export.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <utility>

namespace vorrel {

class AbstractJob;

/// Tells a job whether it may go on or should yield.
class KESTAN_EXPORT IJobContinuator {
public:
  virtual ~IJobContinuator();
  virtual bool ShouldContinue() const = 0;
};

/// For a job that is run to its end in place.
class KESTAN_EXPORT AlwaysTrueContinuator final : public IJobContinuator {
public:
  bool ShouldContinue() const override { return true; }
};

/// Where a job can put further jobs.
class KESTAN_EXPORT IJobContainer {
public:
  virtual ~IJobContainer();
  virtual void AddJob(const RefPtr<AbstractJob>& job) = 0;
};

/// For a job that is run in place and has no further ones; what it adds is dropped.
class KESTAN_EXPORT ExpectNoJobsContainer final : public IJobContainer {
public:
  void AddJob(const RefPtr<AbstractJob>&) override {}
};

/// Work for the main thread that is done in slices.
class KESTAN_EXPORT AbstractJob : public AtomicReferent {
public:
  /// Answers of `Run`.
  enum Result { kRunAgain = 0, kDone = 2 };

  /// `name` is a literal, for whoever looks at what waits.
  explicit AbstractJob(const char* name) : name_(name) {}
  ~AbstractJob() override;

  const char* GetName() const { return name_; }
  /// Works until it is done or `continuator` says to stop. Called again later when it answers
  /// `kRunAgain`.
  virtual Result Run(const IJobContinuator& continuator, IJobContainer& container) = 0;
  /// The library stops: the job lets go of all that it has of the library. True for a job that has
  /// nothing to do then. Main thread.
  virtual bool Abandon() { return false; }

private:
  const char* const name_;
};

/// The jobs that `Pump::Run` runs on the main thread. Takes jobs from any thread, and keeps a
/// reference until they are done.
KESTAN_EXPORT IJobContainer& GetDefaultJobScheduler();

/// Lets go of a reference on the main thread, for objects that may die only there.
class KESTAN_EXPORT UnrefJob final : public AbstractJob {
public:
  /// Drops the reference here when this is the main thread, else there at the next `Pump::Run`.
  template <class T> static void UnrefOnMain(RefPtr<T>&& object) {
    UnrefOnMainImpl(RefPtr<const AtomicReferent>(std::move(object)));
  }
  static void UnrefOnMainImpl(RefPtr<const AtomicReferent>&& object);

  Result Run(const IJobContinuator& continuator, IJobContainer& container) override;
  bool Abandon() override;

private:
  explicit UnrefJob(RefPtr<const AtomicReferent>&& object);

  RefPtr<const AtomicReferent> object_;
};

} // namespace vorrel
