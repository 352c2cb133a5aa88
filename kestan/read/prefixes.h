#pragma once

#include "kestan/core/unknowndata.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <unordered_map>

namespace vorrel::kestan {

/// True for a character that the name in front of a colon may have; also for some others, which no
/// declared prefix has.
inline bool IsPrefixChar(QChar c) {
  const ushort u = c.unicode();
  return u >= 0x80 || (u >= '0' && u <= '9') || (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') ||
         u == '_' || u == '-' || u == '.';
}

/// Calls `act` with each text in front of a colon in `text` that may be a prefix: those of the
/// names, and those that values mention ("xs:string"). The string is good for the call alone.
template <class Act> void ForEachPrefix(QStringView text, Act act) {
  const QChar* const begin = text.begin();
  const QChar* first = begin; // behind the last colon
  for (const QChar* c = begin; c != text.end(); ++c) {
    if (*c != QLatin1Char(':'))
      continue;
    const QChar* start = c;
    while (start != first && IsPrefixChar(start[-1]))
      --start;
    if (start != c)
      act(QString::fromRawData(start, static_cast<int>(c - start)));
    first = c + 1;
  }
}

/// What every written document means by a prefix, if it's one of those that its root always
/// declares; else the null string.
QString GetRootUri(const QString& prefix);

/// What documents mean by a prefix that they don't declare.
QString GetUndeclaredUri(const QString& prefix);

/// True when a prefix may stand for `uri`.
bool IsDeclarableUri(QStringView uri);

/// Looks prefixes up in the declarations that preserved content carries.
class CarriedPrefixes {
public:
  /// Looks into this list from now on. True when it's none of those that were long and have been
  /// looked into before.
  bool SetList(const NamespaceList& list);
  const NamespaceList& GetList() const { return list_; }

  /// The URI of the prefix; the null string when the list doesn't declare it.
  QString Find(const QString& prefix) const;

private:
  struct LongList {
    NamespaceList list; ///< Keeps its place in memory from being used again.
    QHash<QString, QString> uris;
  };

  static constexpr int kShort = 8; ///< Up to this length, comparing is faster than a hash.

  NamespaceList list_;
  const LongList* longList_ = nullptr;
  std::unordered_map<const void*, LongList> longLists_;
};

} // namespace vorrel::kestan
