#pragma once

#include "kestan/host/refptr.h"
#include "kestan/read/ikmlparser.h"
#include "kestan/read/parsejob.h"

#include <vector>

namespace vorrel::kestan {

/// The job of a `KmlParser`.
class KESTAN_EXPORT KmlParserJob final : public ParseJob {
public:
  using ParseJob::ParseJob;

  void SetDone(std::function<void(KmlParserJob*)> done) { done_ = std::move(done); }
  void OnPreMerge() override {}
  void OnPostMerge() override;

private:
  std::function<void(KmlParserJob*)> done_;
};

/// Reads documents on a worker thread. It may go, also from inside a callback: what it still reads
/// is cancelled then, and nobody is called back. Main thread.
class KESTAN_EXPORT KmlParser final : public IKmlParser {
public:
  /// Without a worker documents are read in place.
  explicit KmlParser(WorkerThread* worker) : worker_(worker) {}
  KmlParser(const KmlParser&) = delete;
  KmlParser& operator=(const KmlParser&) = delete;
  ~KmlParser() override;

  void ParseKmlOrKmz(const QByteArray& bytes, unsigned access, Done done) override;
  /// Hands the result of a job over and forgets the job.
  void ParseKmlOrKmzDone(KmlParserJob* job, const Done& done);
  /// Forgets a job, which is cancelled and calls nobody back; any other job stays as it is.
  void RemoveParserJob(KmlParserJob* job);

private:
  WorkerThread* const worker_;
  std::vector<RefPtr<KmlParserJob>> jobs_;
};

} // namespace vorrel::kestan
