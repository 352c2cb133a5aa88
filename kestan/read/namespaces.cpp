#include "kestan/read/namespaces.h"

#include <QVector>

#include <mutex>
#include <utility>

namespace vorrel::kestan {

namespace {

struct RegisteredBases {
  std::mutex lock;
  QVector<std::pair<Namespace, QString>> bases;
};

RegisteredBases& GetRegisteredBases() {
  static RegisteredBases registered;
  return registered;
}

bool MatchesAt(const QString& text, int at, const QString& base) {
  if (base.size() > text.size() - at)
    return false;
  for (int i = 0; i < base.size(); ++i) {
    if (base[i] != QLatin1Char('.') && base[i] != text[at + i])
      return false;
  }
  return true;
}

bool Contains(const QString& text, const QString& base) {
  for (int at = 0; at + base.size() <= text.size(); ++at) {
    if (MatchesAt(text, at, base))
      return true;
  }
  return false;
}

/// Finds the leftmost place of `base` with a version behind it. A version too large for an int
/// reads as 0.
bool ContainsVersioned(const QString& text, const QString& base, int* major) {
  const auto isDigit = [](QChar c) { return c >= QLatin1Char('1') && c <= QLatin1Char('9'); };
  for (int at = 0; at + base.size() < text.size(); ++at) {
    if (!MatchesAt(text, at, base))
      continue;
    const int begin = at + static_cast<int>(base.size());
    int end = begin;
    while (end < text.size() && isDigit(text[end]))
      ++end;
    if (end == begin)
      continue;
    if (major)
      *major = text.mid(begin, end - begin).toInt();
    return true;
  }
  return false;
}

} // namespace

Namespace NamespaceStringToEnum(const QString& uri, int* major, int* minor) {
  if (major)
    *major = kUnspecifiedVersion;
  if (minor)
    *minor = kUnspecifiedVersion;
  static const std::pair<Namespace, QString> versioned[] = {
      {Namespace::kKml, QLatin1String(kKmlNamespaceString)},
      {Namespace::kKml, QLatin1String(kOgcNamespaceString)},
      {Namespace::kExt, QLatin1String(kExtNamespaceString)},
      {Namespace::kKml, QLatin1String(kOldKmlNamespaceString)},
  };
  for (const auto& [ns, base] : versioned) {
    if (ContainsVersioned(uri, base, major))
      return ns;
  }
  if (Contains(uri, QLatin1String(kAtomNamespaceString)))
    return Namespace::kAtom;
  if (Contains(uri, QLatin1String(kXalNamespaceString)))
    return Namespace::kXal;
  if (uri == QLatin1String(kNullNamespaceString))
    return Namespace::kNone;

  RegisteredBases& registered = GetRegisteredBases();
  const std::lock_guard<std::mutex> guard(registered.lock);
  for (const auto& [ns, base] : std::as_const(registered.bases)) {
    if (ContainsVersioned(uri, base, major))
      return ns;
  }
  return Namespace::kUnknown;
}

QString NamespaceEnumToString(Namespace ns) {
  switch (ns) {
  case Namespace::kNone:
    return QLatin1String(kNullNamespaceString);
  case Namespace::kKml:
    return QLatin1String(kOgcNamespaceString) + QLatin1String(kKmlVersionString);
  case Namespace::kExt:
    return QLatin1String(kExtNamespaceString) + QLatin1String(kKmlVersionString);
  case Namespace::kWms:
    return QLatin1String(kWmsNamespaceString);
  case Namespace::kAtom:
    return QLatin1String(kAtomNamespaceString);
  case Namespace::kXal:
    return QLatin1String(kXalNamespaceString);
  case Namespace::kUnknown:
    break;
  }
  return QString();
}

bool IsNamespaceStandard(const QString& prefix, Namespace ns) {
  switch (ns) {
  case Namespace::kKml:
    return prefix.isEmpty() || prefix == QLatin1String(kKmlPrefix);
  case Namespace::kExt:
    return prefix == QLatin1String(kExtPrefix);
  case Namespace::kAtom:
    return prefix == QLatin1String(kAtomPrefix);
  case Namespace::kXal:
    return prefix == QLatin1String(kXalPrefix);
  default:
    return false;
  }
}

QString GetStandardNamespacesString() {
  return QStringLiteral("xmlns=\"%1%2\" xmlns:%3=\"%4%5\" xmlns:kml=\"%6%7\" xmlns:%8=\"%9\"")
      .arg(QLatin1String(kOgcNamespaceString), QLatin1String(kKmlVersionString),
           QLatin1String(kExtPrefix), QLatin1String(kExtNamespaceString),
           QLatin1String(kKmlVersionString), QLatin1String(kOgcNamespaceString),
           QLatin1String(kKmlVersionString), QLatin1String(kAtomPrefix),
           QLatin1String(kAtomNamespaceString));
}

bool IsRootPrefix(const QString& prefix) {
  return prefix.isEmpty() || prefix == QLatin1String(kExtPrefix) ||
         prefix == QLatin1String(kKmlPrefix) || prefix == QLatin1String(kAtomPrefix);
}

bool RegisterNamespaceBase(Namespace ns, const QString& base) {
  if ((ns != Namespace::kKml && ns != Namespace::kExt) || base.isEmpty())
    return false;
  RegisteredBases& registered = GetRegisteredBases();
  const std::lock_guard<std::mutex> guard(registered.lock);
  const std::pair<Namespace, QString> entry(ns, base);
  if (!registered.bases.contains(entry))
    registered.bases.append(entry);
  return true;
}

void UnregisterNamespaceBases() {
  RegisteredBases& registered = GetRegisteredBases();
  const std::lock_guard<std::mutex> guard(registered.lock);
  registered.bases.clear();
}

} // namespace vorrel::kestan
