#include "kestan/read/referencecheck.h"

#include <utility>

namespace vorrel::kestan {

void ReferenceCheck::Clear() {
  ids_.clear();
  references_.clear();
}

qint64 ReferenceCheck::AddId(const QString& id, qint64 line) {
  qint64& known = ids_[id];
  if (known != 0)
    return known;
  known = line;
  return 0;
}

void ReferenceCheck::AddReference(const QString& id, ParseReport report) {
  if (!ids_.contains(id))
    references_.push_back({id, std::move(report)});
}

mmvector<ParseReport> ReferenceCheck::TakeDangling() {
  mmvector<ParseReport> dangling;
  for (Reference& reference : references_) {
    if (!ids_.contains(reference.id))
      dangling.push_back(std::move(reference.report));
  }
  references_.clear();
  return dangling;
}

} // namespace vorrel::kestan
