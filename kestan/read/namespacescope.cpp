#include "kestan/read/namespacescope.h"

#include "kestan/read/namespaces.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// Up to this many bindings, comparing them is faster than a hash.
constexpr std::size_t kFewBindings = 16;

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

const UnknownNamespace* FindPrefix(const NamespaceList& list, const QString& prefix) {
  for (const RefPtr<UnknownNamespace>& entry : list) {
    if (entry->prefix == prefix)
      return entry.get();
  }
  return nullptr;
}

} // namespace

void NamespaceScope::Clear() {
  ++generation_;
  bindings_.clear();
  marks_.clear();
  newest_.clear();
  default_ = initialDefault_;
  snapshot_.clear();
  snapshotValid_ = false;
  cost_ = 0;
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

void NamespaceScope::InitDefault() {
  const Namespace ns = Lookup(nullptr, 0);
  default_ = ns == Namespace::kNone ? Namespace::kKml : ns;
}

void NamespaceScope::Declare(int depth, const QString& prefix, const QString& uri, Namespace ns,
                             const QString& documentUrl) {
  ++generation_;
  const int index = static_cast<int>(bindings_.size());
  if (marks_.empty() || marks_.back().depth != depth)
    marks_.push_back({depth, index});
  Binding binding{
      prefix, GetWrittenUri(ns, uri), ns, IsListed(prefix, ns), newest_.value(prefix, -1), {}};
  if (binding.listed)
    binding.record = new UnknownNamespace(documentUrl, prefix, binding.uri);
  bindings_.push_back(std::move(binding));
  newest_.insert(prefix, index);
  snapshotValid_ = false;
  if (prefix.isEmpty())
    InitDefault();
}

void NamespaceScope::Pop(int depth) {
  if (marks_.empty() || marks_.back().depth != depth)
    return;
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
  snapshotValid_ = false;
  if (defaultEnds)
    InitDefault();
}

QString NamespaceScope::GetForeignDefaultUri() const {
  const int index = Find(nullptr, 0);
  if (index < 0)
    return default_ == initialDefault_ ? QString() : QLatin1String(kUndeclaredNamespaceString);
  return default_ == Namespace::kKml ? QString() : bindings_[static_cast<std::size_t>(index)].uri;
}

const NamespaceList& NamespaceScope::GetSnapshot() {
  if (!snapshotValid_) {
    snapshot_.clear();
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
      const Binding& binding = bindings_[i];
      if (binding.listed && newest_.value(binding.prefix) == static_cast<int>(i))
        snapshot_.append(binding.record);
    }
    snapshotValid_ = true;
    cost_ += static_cast<qint64>(bindings_.size()) + kCopyCost * snapshot_.size();
  }
  return snapshot_;
}

void NamespaceScope::Collect(int depth, Own own, NamespaceList& list, AttributeList& attributes) {
  const bool hasOwn = own != kOwnsTheScope && !marks_.empty() && marks_.back().depth == depth;
  if (!hasOwn) {
    const NamespaceList& snapshot = GetSnapshot();
    if (list.isEmpty())
      list = snapshot;
    if (list.constData() == snapshot.constData())
      return;
  }
  cost_ += static_cast<qint64>(bindings_.size());
  if (!list.isDetached())
    cost_ += kCopyCost * list.size();
  const std::size_t ownStart =
      hasOwn ? static_cast<std::size_t>(marks_.back().first) : bindings_.size();
  const auto isOwn = [ownStart](int index) { return static_cast<std::size_t>(index) >= ownStart; };
  const auto addAttribute = [&attributes](const Binding& binding) {
    attributes.emplace_back(QLatin1String("xmlns:") + binding.prefix, binding.uri);
  };

  for (std::size_t i = 0; i < bindings_.size(); ++i) {
    const Binding& binding = bindings_[i];
    if (binding.prefix.isEmpty() || (!binding.listed && !IsRootPrefix(binding.prefix)))
      continue;
    const int newest = newest_.value(binding.prefix);
    if (isOwn(static_cast<int>(i))) {
      if (own == kOwnInText)
        break;
      const int outer = binding.shadowed;
      if ((outer >= 0 && bindings_[static_cast<std::size_t>(outer)].uri != binding.uri) ||
          (binding.listed && IsRootPrefix(binding.prefix))) {
        addAttribute(binding);
        continue;
      }
    } else if (newest != static_cast<int>(i) &&
               !(isOwn(newest) &&
                 bindings_[static_cast<std::size_t>(newest)].shadowed == static_cast<int>(i))) {
      continue; // Hidden by an element around this one.
    }

    cost_ += list.size();
    const UnknownNamespace* const present = FindPrefix(list, binding.prefix);
    const bool fits = !present || present->uri == binding.uri;
    if (fits && !present && binding.listed)
      list.append(binding.record);
    else if (!fits && newest == static_cast<int>(i))
      addAttribute(binding);
  }
}

} // namespace vorrel::kestan
