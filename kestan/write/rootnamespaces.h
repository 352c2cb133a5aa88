#pragma once

#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/write/freenames.h"

#include <QHash>
#include <QString>
#include <QStringView>

namespace vorrel::kestan {

/// True when a document may declare `prefix`: a name without a colon, neither "xml" nor "xmlns".
bool IsDeclarablePrefix(QStringView prefix);
/// True when a prefix may stand for `uri`.
bool IsDeclarableUri(QStringView uri);

/// The namespaces that the root of a document declares: the default one and the standard prefixes,
/// and what preserved content adds. Each prefix has one meaning.
class RootNamespaces {
public:
  RootNamespaces();

  /// Takes over each declaration of the list whose prefix is free. A prefix that the root already
  /// gives another meaning keeps it.
  void Add(const NamespaceList& list);

  /// Declares the prefix if it's free. False when it stands for another URI.
  bool Declare(const QString& prefix, const QString& uri);
  /// A prefix that stands for the URI, made and declared if there's none.
  QString PrefixFor(const QString& uri);

  /// The declarations beyond the standard ones, in the order in which they came.
  const mmvector<RefPtr<UnknownNamespace>>& GetUnknown() const { return unknown_; }

private:
  bool Declare(const RefPtr<UnknownNamespace>& declaration);

  mmvector<RefPtr<UnknownNamespace>> unknown_;
  QHash<QString, QString> uriByPrefix_;
  QHash<QString, QString> prefixByUri_;
  NamespaceList last_; ///< The list added last; many objects share one.
  FreeNames freePrefixes_;
};

} // namespace vorrel::kestan
