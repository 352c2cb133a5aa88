#include "kestan/read/namespacescope.h"

#include "kestan/read/namespaces.h"
#include "kestan/read/prefixes.h"

#include <QSet>

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// Up to this many bindings, comparing them is faster than a hash.
constexpr std::size_t kFewBindings = 16;

/// Up to this many entries, a list is searched for what it's about to get.
constexpr int kTidyList = 64;

bool Equals(const QString& text, const QChar* other, int length) {
  return text.size() == length && std::equal(other, other + length, text.constData());
}

/// What an output document declares for the namespace. Only Atom and xAL keep the text of their
/// declaration; it may hold a version.
QString GetWrittenUri(Namespace ns, const QString& uri) {
  return ns == Namespace::kKml || ns == Namespace::kExt ? NamespaceEnumToString(ns) : uri;
}

bool IsListed(const QString& prefix, Namespace ns) {
  // Every document has these two bound, and may not bind them to anything else.
  if (prefix.isEmpty() || prefix == QLatin1String("xml") || prefix == QLatin1String("xmlns"))
    return false;
  return !(IsRootPrefix(prefix) && IsNamespaceStandard(prefix, ns));
}

} // namespace

void NamespaceScope::Clear() {
  ++generation_;
  bindings_.clear();
  marks_.clear();
  newest_.clear();
  default_ = initialDefault_;
  additions_.clear();
  innermost_ = -1;
  copiedEntries_ = 0;
  isPartial_ = false;
}

void NamespaceScope::SetInitialDefault(Namespace ns) {
  ++generation_;
  initialDefault_ = ns;
  default_ = ns;
}

int NamespaceScope::Find(const QChar* prefix, int length) const {
  if (bindings_.size() > kFewBindings)
    return newest_.value(QString::fromRawData(prefix, length), -1);
  for (std::size_t i = bindings_.size(); i-- > 0;) {
    if (Equals(bindings_[i].prefix, prefix, length))
      return static_cast<int>(i);
  }
  return -1;
}

Namespace NamespaceScope::Lookup(const QChar* prefix, int length) const {
  const int index = Find(prefix, length);
  return index < 0 ? Namespace::kUnknown : bindings_[static_cast<std::size_t>(index)].ns;
}

QString NamespaceScope::GetUri(const QChar* prefix, int length) const {
  const int index = Find(prefix, length);
  return index < 0 ? QString() : bindings_[static_cast<std::size_t>(index)].uri;
}

/// Where names without a prefix are those of KML, nothing is declared as being in no namespace.
void NamespaceScope::InitDefault() { default_ = Lookup(nullptr, 0); }

void NamespaceScope::Declare(int depth, const QString& prefix, const QString& uri, Namespace ns,
                             const QString& documentUrl) {
  ++generation_;
  const int index = static_cast<int>(bindings_.size());
  if (marks_.empty() || marks_.back().depth != depth)
    marks_.push_back({depth, index, {}, false});
  innermost_ = std::max(innermost_, depth);
  Binding binding{
      prefix, GetWrittenUri(ns, uri), ns, IsListed(prefix, ns), newest_.value(prefix, -1), {}};
  if (binding.listed)
    binding.record = new UnknownNamespace(documentUrl, prefix, binding.uri);
  bindings_.push_back(std::move(binding));
  newest_.insert(prefix, index);
  if (prefix.isEmpty())
    InitDefault();
}

void NamespaceScope::End(int depth) {
  if (!additions_.empty() && additions_.back().objectDepth >= depth)
    additions_.pop_back();
  if (!marks_.empty() && marks_.back().depth == depth)
    EndDeclarations();
  innermost_ = std::max(marks_.empty() ? -1 : marks_.back().depth,
                        additions_.empty() ? -1 : additions_.back().objectDepth);
}

void NamespaceScope::EndDeclarations() {
  ++generation_;
  const std::size_t first = static_cast<std::size_t>(marks_.back().first);
  marks_.pop_back();
  bool defaultEnds = false;
  while (bindings_.size() > first) {
    const Binding& binding = bindings_.back();
    defaultEnds = defaultEnds || binding.prefix.isEmpty();
    if (binding.shadowed < 0)
      newest_.remove(binding.prefix);
    else
      newest_.insert(binding.prefix, binding.shadowed);
    bindings_.pop_back();
  }
  if (defaultEnds)
    InitDefault();
}

QString NamespaceScope::GetForeignDefaultUri() const {
  const int index = Find(nullptr, 0);
  if (index < 0)
    return default_ == initialDefault_ ? QString() : QLatin1String(kUndeclaredNamespaceString);
  return default_ == Namespace::kKml ? QString() : bindings_[static_cast<std::size_t>(index)].uri;
}

/// The binding of the prefix that is visible when those from `end` on are left away, or -1.
int NamespaceScope::FindBelow(const QString& prefix, std::size_t end) const {
  int index = newest_.value(prefix, -1);
  while (index >= static_cast<int>(end))
    index = bindings_[static_cast<std::size_t>(index)].shadowed;
  return index;
}

/// The number of marks down to a depth.
std::size_t NamespaceScope::GetMarks(int depth) const {
  std::size_t count = marks_.size();
  while (count > 0 && marks_[count - 1].depth > depth)
    --count;
  return count;
}

bool NamespaceScope::Afford(std::size_t entries, qint64 documentBytes) {
  const qint64 copied = copiedEntries_ + static_cast<qint64>(entries);
  if (copied > kFreeEntries + documentBytes / kBytesPerEntry)
    return false;
  copiedEntries_ = copied;
  return true;
}

void NamespaceScope::MakeSnapshot(Mark& mark, std::size_t end) {
  mmvector<bool> isHidden(end);
  for (std::size_t i = 0; i < end; ++i) {
    if (bindings_[i].shadowed >= 0)
      isHidden[static_cast<std::size_t>(bindings_[i].shadowed)] = true;
  }
  for (std::size_t i = 0; i < end; ++i) {
    if (bindings_[i].listed && !isHidden[i])
      mark.snapshot.append(bindings_[i].record);
  }
  mark.hasSnapshot = true;
}

void NamespaceScope::Carry(const Place& place, NamespaceList& list, AttributeList* attributes) {
  const std::size_t marks = GetMarks(place.objectDepth);
  const std::size_t end =
      marks < marks_.size() ? static_cast<std::size_t>(marks_[marks].first) : bindings_.size();
  if (list.isEmpty() && marks > 0) {
    Mark& mark = marks_[marks - 1];
    if (!mark.hasSnapshot) {
      if (Afford(end, place.documentBytes))
        MakeSnapshot(mark, end);
      else
        isPartial_ = true;
    }
    list = mark.snapshot;
  }
  if (attributes)
    CarryOwn(end, place, list, *attributes);
}

void NamespaceScope::CarryOwn(std::size_t first, const Place& place, NamespaceList& list,
                              AttributeList& attributes) {
  for (std::size_t i = first; i < bindings_.size(); ++i) {
    const Binding& binding = bindings_[i];
    const bool isRoot = IsRootPrefix(binding.prefix);
    if (binding.prefix.isEmpty() || (!binding.listed && !isRoot) ||
        newest_.value(binding.prefix) != static_cast<int>(i))
      continue;
    const bool hasAdditions =
        !additions_.empty() && additions_.back().objectDepth == place.objectDepth;
    const int outer = FindBelow(binding.prefix, first);
    QString carried;
    if (outer >= 0) {
      carried = bindings_[static_cast<std::size_t>(outer)].uri;
    } else if (hasAdditions) {
      // A field may not have kept the list that it was handed with its attributes.
      const auto added = additions_.back().places.value(binding.prefix, list.size());
      if (added < list.size() && list[added]->prefix == binding.prefix)
        carried = list[added]->uri;
    }
    if (carried.isNull() ? isRoot && !binding.listed : carried == binding.uri)
      continue; // The content sees it all the same.
    const std::size_t copied = list.isDetached() ? 0 : static_cast<std::size_t>(list.size());
    if (!carried.isNull() || isRoot || !Afford(copied, place.documentBytes)) {
      attributes.emplace_back(QLatin1String("xmlns:") + binding.prefix, binding.uri);
      continue;
    }
    list.append(binding.record);
    if (!hasAdditions)
      additions_.push_back({place.objectDepth, {}});
    innermost_ = std::max(innermost_, place.objectDepth);
    additions_.back().places.insert(binding.prefix, list.size() - 1);
  }
}

void NamespaceScope::CarryMentioned(const Place& place, QStringView text, NamespaceList& list) {
  if (!isPartial_)
    return;
  const std::size_t marks = GetMarks(place.objectDepth);
  const std::size_t end =
      marks < marks_.size() ? static_cast<std::size_t>(marks_[marks].first) : bindings_.size();
  if (marks > 0 && marks_[marks - 1].hasSnapshot &&
      marks_[marks - 1].snapshot.constData() == list.constData())
    return; // It has all.
  QSet<int> added;
  ForEachPrefix(text, [&](const QString& prefix) {
    const int index = FindBelow(prefix, end);
    if (index < 0 || !bindings_[static_cast<std::size_t>(index)].listed || added.contains(index))
      return;
    added.insert(index);
    const RefPtr<UnknownNamespace>& record = bindings_[static_cast<std::size_t>(index)].record;
    // To have one twice does no harm: short lists are kept tidy, long ones grow with the text.
    if (list.size() > kTidyList || !list.contains(record))
      list.append(record);
  });
}

} // namespace vorrel::kestan
