#include "kestan/read/kmlparser.h"

#include "kestan/feature/abstractfeature.h" // what callers want

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

IKmlParser::~IKmlParser() = default;

void KmlParserJob::OnPostMerge() {
  if (done_)
    std::exchange(done_, nullptr)(this);
}

KmlParser::~KmlParser() {
  while (!jobs_.empty())
    RemoveParserJob(jobs_.back().get());
}

void KmlParser::ParseKmlOrKmz(const QByteArray& bytes, unsigned access, Done done) {
  const RefPtr<KmlParserJob> job(
      new KmlParserJob(worker_, QString(), bytes, access, nullptr, true));
  job->SetDone(
      [this, done = std::move(done)](KmlParserJob* ready) { ParseKmlOrKmzDone(ready, done); });
  jobs_.push_back(job);
  job->Start();
}

void KmlParser::ParseKmlOrKmzDone(KmlParserJob* job, const Done& done) {
  const RefPtr<KmlParserJob> kept(job);
  const Done call = done;
  RemoveParserJob(job); // ahead of the call, which may end this parser
  SchemaObject* const result = job->GetResult().get();
  const bool isFeature = result && result->isOfType(AbstractFeature::GetClassSchema());
  if (call)
    call(job->GetErrorText(), isFeature ? static_cast<AbstractFeature*>(result) : nullptr);
}

void KmlParser::RemoveParserJob(KmlParserJob* job) {
  const auto place = std::find(jobs_.begin(), jobs_.end(), job);
  if (place == jobs_.end())
    return;
  const RefPtr<KmlParserJob> kept = std::move(*place);
  jobs_.erase(place);
  kept->Cancel();
  kept->SetDone(nullptr); // one that hasn't begun has no link to cut yet
  kept->SetOwner(nullptr);
}

} // namespace vorrel::kestan
