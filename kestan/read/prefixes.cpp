#include "kestan/read/prefixes.h"

#include "kestan/read/namespaces.h"

namespace vorrel::kestan {

QString GetRootUri(const QString& prefix) {
  for (const auto& [name, ns] :
       {std::pair(kExtPrefix, Namespace::kExt), std::pair(kKmlPrefix, Namespace::kKml),
        std::pair(kAtomPrefix, Namespace::kAtom)}) {
    if (prefix == QLatin1String(name))
      return NamespaceEnumToString(ns);
  }
  return QString();
}

QString GetUndeclaredUri(const QString& prefix) {
  if (prefix == QLatin1String("xsi"))
    return QStringLiteral("http://www.w3.org/2001/XMLSchema-instance");
  if (prefix == QLatin1String("xs"))
    return QStringLiteral("http://www.w3.org/2001/XMLSchema");
  if (prefix == QLatin1String("xlink"))
    return QStringLiteral("http://www.w3.org/1999/xlink");
  if (prefix == QLatin1String(kXalPrefix))
    return QLatin1String(kXalNamespaceString) + QLatin1String("2.0");
  const QString rootUri = GetRootUri(prefix);
  return rootUri.isNull() ? QLatin1String(kUndeclaredNamespaceString) + prefix : rootUri;
}

bool IsDeclarableUri(QStringView uri) {
  return !uri.isEmpty() && uri != QLatin1String("http://www.w3.org/XML/1998/namespace") &&
         uri != QLatin1String("http://www.w3.org/2000/xmlns/");
}

bool CarriedPrefixes::SetList(const NamespaceList& list) {
  if (list.constData() == list_.constData())
    return false;
  list_ = list;
  longList_ = nullptr;
  if (list.size() <= kShort)
    return true;
  const auto [entry, isNew] = longLists_.try_emplace(list.constData());
  LongList& known = entry->second;
  longList_ = &known;
  if (!isNew)
    return false;
  known.list = list;
  known.uris.reserve(list.size());
  for (const RefPtr<UnknownNamespace>& declaration : list) {
    if (declaration && IsDeclarableUri(declaration->uri))
      known.uris.insert(declaration->prefix, declaration->uri);
  }
  return true;
}

QString CarriedPrefixes::Find(const QString& prefix) const {
  if (longList_)
    return longList_->uris.value(prefix);
  for (auto declaration = list_.constEnd(); declaration != list_.constBegin();) {
    --declaration;
    if (*declaration && (*declaration)->prefix == prefix && IsDeclarableUri((*declaration)->uri))
      return (*declaration)->uri;
  }
  return QString();
}

} // namespace vorrel::kestan
