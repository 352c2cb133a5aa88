#include "kestan/write/rootnamespaces.h"

#include "kestan/host/utf8ostream.h"
#include "kestan/read/namespaces.h" // the standard prefixes
#include "kestan/read/prefixes.h"   // and their URIs
#include "kestan/write/xmlname.h"

namespace vorrel::kestan {

bool IsDeclarablePrefix(QStringView prefix) {
  return IsNcName(prefix) && prefix != QLatin1String("xml") && prefix != QLatin1String("xmlns");
}

RootNamespaces::RootNamespaces() {
  for (const char* const name : {kExtPrefix, kKmlPrefix, kAtomPrefix}) {
    const QString prefix = QString::fromLatin1(name);
    const QString uri = GetRootUri(prefix);
    uriByPrefix_.insert(prefix, uri);
    prefixByUri_.insert(uri, prefix);
  }
}

void RootNamespaces::WriteDeclarations(Utf8OStream& stream) const {
  stream << GetStandardNamespacesString();
  for (const RefPtr<UnknownNamespace>& declaration : unknown_) {
    stream << " xmlns:" << declaration->prefix << "=\"";
    const AttributeScope scope(stream);
    XmlUtf8OStream(stream) << declaration->uri;
    stream << "\"";
  }
}

void RootNamespaces::Add(const NamespaceList& list) {
  for (const RefPtr<UnknownNamespace>& declaration : list) {
    if (declaration && !uriByPrefix_.contains(declaration->prefix))
      Declare(declaration);
  }
}

bool RootNamespaces::Declare(const QString& prefix, const QString& uri) {
  const auto known = uriByPrefix_.constFind(prefix);
  if (known != uriByPrefix_.constEnd())
    return *known == uri && !IsRebound(prefix);
  return Declare(RefPtr<UnknownNamespace>(new UnknownNamespace(QString(), prefix, uri)));
}

bool RootNamespaces::Declare(const RefPtr<UnknownNamespace>& declaration) {
  const qint64 characters = declaration->prefix.size() + declaration->uri.size();
  if (!IsDeclarablePrefix(declaration->prefix) || !IsDeclarableUri(declaration->uri) ||
      IsRebound(declaration->prefix) || unknown_.size() >= kMaxDeclarations ||
      characters_ + characters > kMaxCharacters)
    return false;
  characters_ += characters;
  Enter(declaration);
  return true;
}

void RootNamespaces::Enter(const RefPtr<UnknownNamespace>& declaration) {
  uriByPrefix_.insert(declaration->prefix, declaration->uri);
  if (!prefixByUri_.contains(declaration->uri))
    prefixByUri_.insert(declaration->uri, declaration->prefix);
  unknown_.push_back(declaration);
}

void RootNamespaces::Rebind(const QString& prefix) {
  rebound_.insert(prefix);
  isExtensionRebound_ = isExtensionRebound_ || prefix == QLatin1String(kExtPrefix);
}

QString RootNamespaces::PrefixFor(const QString& uri) {
  const QString known = prefixByUri_.value(uri);
  if (!known.isEmpty() && !IsRebound(known))
    return known;
  return MakePrefix(uri);
}

QString RootNamespaces::MakePrefix(const QString& uri) {
  const QString prefix = freePrefixes_.Find(
      QStringLiteral("ns"), [](int number) { return QStringLiteral("ns%1").arg(number); },
      [this](const QString& candidate) {
        return !uriByPrefix_.contains(candidate) && !IsRebound(candidate);
      });
  Enter(RefPtr<UnknownNamespace>(new UnknownNamespace(QString(), prefix, uri)));
  prefixByUri_.insert(uri, prefix);
  return prefix;
}

} // namespace vorrel::kestan
