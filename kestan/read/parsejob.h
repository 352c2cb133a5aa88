#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/core/threadscope.h"
#include "kestan/host/export.h"
#include "kestan/host/port.h"
#include "kestan/host/workerthread.h"

#include <QByteArray>
#include <QString>

#include <atomic>

namespace vorrel::kestan {

/// Reads one document on a worker thread and brings it to the main one, where `OnPostMerge` then
/// says that its results are there. Until then nobody touches them.
///
/// `Pump::Run` merges the document by slices, in the order in which workers finish theirs. Made and
/// started on the main thread, in a `RefPtr`. The job lives until it's merged; its results go on
/// the main thread. When the library stops, a job that waits isn't run, one that runs ends early,
/// and none is called back.
class KESTAN_EXPORT ParseJob : public WorkerThread::Job, public ThreadScope::Observer {
public:
  enum Status {
    kGood = 2,    ///< Nothing has failed so far.
    kFailed = 14, ///< There's an error text.
  };

  /// For clients that use a job on several threads; the library doesn't touch it.
  struct Lock {
    port::MutexPosix mutex;
    System::ThreadId owner = System::kInvalidThreadId;
    int count = 0;
  };

  /// `bytes` are KML or KMZ that came from `url`, and stay shared with the caller. Objects get
  /// `access`, and live on `memoryManager` (null for the usual heap). `flag` is the client's.
  ParseJob(WorkerThread* worker, const QString& url, const QByteArray& bytes, unsigned access,
           MemoryManager* memoryManager, bool flag);
  ~ParseJob() override;

  /// Gives the job to its worker; without one it runs, and is merged, here and now.
  void Start() { AddToQueue(worker_); }
  /// The document isn't wanted any more: the parse ends soon with an error, or at once when it
  /// begins. From any thread.
  void Cancel() { cancelled_ = true; }

  void Run() override;
  void OnMergeDropped() override;
  RefPtr<const AtomicReferent> GetKeeper() const override;
  bool IsCancelled() const override { return cancelled_; }

  const QString& GetUrl() const { return url_; }
  bool GetFlag() const { return flag_; }
  /// What `ExpatHandler::LoadXml` returned.
  const RefPtr<SchemaObject>& GetResult() const { return result_; }
  /// The `NetworkLinkControl` of the document, whether or not that has a feature too; null when
  /// there's none.
  const RefPtr<SchemaObject>& GetLinkControl() const { return linkControl_; }
  /// A `Status`.
  int GetStatus() const { return status_; }
  /// Null when nothing has failed.
  const QString& GetErrorText() const { return error_; }

  Lock lock;

private:
  void Read(ThreadScope& scope);

  WorkerThread* const worker_;
  const unsigned session_; ///< The job runs only before the library stops.
  const QString url_;
  const QByteArray bytes_;
  const unsigned access_;
  MemoryManager* const memoryManager_;
  const bool flag_;
  RefPtr<SchemaObject> result_;
  RefPtr<SchemaObject> linkControl_;
  int status_ = kGood;
  QString error_;
  std::atomic<bool> cancelled_{false};
};

} // namespace vorrel::kestan
