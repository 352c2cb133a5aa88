#pragma once

#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/write/freenames.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringView>

namespace vorrel::kestan {

class Utf8OStream;

/// True when a document may declare `prefix`: a name without a colon, neither "xml" nor "xmlns".
bool IsDeclarablePrefix(QStringView prefix);

/// What the root of a document declares: the default namespace and the standard prefixes, and what
/// preserved content adds.
///
/// This is the one rule on where declarations stand: the root gives a prefix the first meaning that
/// the output has for it. Content that means something else by it says so itself. Once an element
/// that may hold others has done so, all further content with that prefix does, since it may lie
/// inside.
class RootNamespaces {
public:
  RootNamespaces();

  /// Takes over each declaration of the list whose prefix is free. A prefix that the root already
  /// gives another meaning keeps it.
  void Add(const NamespaceList& list);

  /// True when the prefix stands for the URI wherever content is written from now on; a free one is
  /// declared for it.
  bool Declare(const QString& prefix, const QString& uri);
  /// A prefix that stands for the URI in the same way, made and declared if there's none.
  QString PrefixFor(const QString& uri);
  /// A new one.
  QString MakePrefix(const QString& uri);

  /// An element that may hold others gives the prefix another meaning.
  void Rebind(const QString& prefix);
  bool IsRebound(const QString& prefix) const {
    return !rebound_.isEmpty() && rebound_.contains(prefix);
  }
  /// The same for the prefix with which elements of the extension are written.
  bool IsExtensionRebound() const { return isExtensionRebound_; }

  /// All that the root declares, as attributes with a blank between them.
  void WriteDeclarations(Utf8OStream& stream) const;
  /// The declarations beyond the standard ones, in the order in which they came.
  const mmvector<RefPtr<UnknownNamespace>>& GetUnknown() const { return unknown_; }

private:
  // Readers have limits for the attributes of one element.
  static constexpr std::size_t kMaxDeclarations = std::size_t(1) << 16;
  static constexpr qint64 kMaxCharacters = qint64(1) << 22;

  bool Declare(const RefPtr<UnknownNamespace>& declaration);
  void Enter(const RefPtr<UnknownNamespace>& declaration);

  mmvector<RefPtr<UnknownNamespace>> unknown_;
  QHash<QString, QString> uriByPrefix_;
  QHash<QString, QString> prefixByUri_;
  QSet<QString> rebound_;
  bool isExtensionRebound_ = false;
  qint64 characters_ = 0;
  FreeNames freePrefixes_;
};

} // namespace vorrel::kestan
