#include "kestan/write/rootnamespaces.h"

#include "kestan/core/namespace.h"
#include "kestan/read/namespaces.h" // the URIs of the standard prefixes
#include "kestan/write/xmlname.h"

namespace vorrel::kestan {

bool IsDeclarablePrefix(QStringView prefix) {
  return IsNcName(prefix) && prefix != QLatin1String("xml") && prefix != QLatin1String("xmlns");
}

bool IsDeclarableUri(QStringView uri) {
  return !uri.isEmpty() && uri != QLatin1String("http://www.w3.org/XML/1998/namespace") &&
         uri != QLatin1String("http://www.w3.org/2000/xmlns/");
}

RootNamespaces::RootNamespaces() {
  const auto add = [this](const char* prefix, Namespace ns) {
    const QString uri = NamespaceEnumToString(ns);
    uriByPrefix_.insert(QString::fromLatin1(prefix), uri);
    prefixByUri_.insert(uri, QString::fromLatin1(prefix));
  };
  add(kExtPrefix, Namespace::kExt);
  add(kKmlPrefix, Namespace::kKml);
  add(kAtomPrefix, Namespace::kAtom);
}

void RootNamespaces::Add(const NamespaceList& list) {
  if (list.isEmpty() || list.constData() == last_.constData())
    return;
  last_ = list;
  for (const RefPtr<UnknownNamespace>& declaration : list) {
    if (declaration)
      Declare(declaration);
  }
}

bool RootNamespaces::Declare(const QString& prefix, const QString& uri) {
  const auto known = uriByPrefix_.constFind(prefix);
  if (known != uriByPrefix_.constEnd())
    return *known == uri;
  return Declare(RefPtr<UnknownNamespace>(new UnknownNamespace(QString(), prefix, uri)));
}

bool RootNamespaces::Declare(const RefPtr<UnknownNamespace>& declaration) {
  const QString& prefix = declaration->prefix;
  if (uriByPrefix_.contains(prefix) || !IsDeclarablePrefix(prefix) ||
      !IsDeclarableUri(declaration->uri))
    return false;
  uriByPrefix_.insert(prefix, declaration->uri);
  if (!prefixByUri_.contains(declaration->uri))
    prefixByUri_.insert(declaration->uri, prefix);
  unknown_.push_back(declaration);
  return true;
}

QString RootNamespaces::PrefixFor(const QString& uri) {
  const QString known = prefixByUri_.value(uri);
  if (!known.isEmpty())
    return known;
  const QString prefix = freePrefixes_.Find(
      QStringLiteral("ns"), [](int number) { return QStringLiteral("ns%1").arg(number); },
      [this](const QString& candidate) { return !uriByPrefix_.contains(candidate); });
  Declare(prefix, uri);
  return prefix;
}

} // namespace vorrel::kestan
