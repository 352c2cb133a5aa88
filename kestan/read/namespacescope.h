#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <QHash>
#include <QString>

namespace vorrel::kestan {

/// The namespace declarations in scope at one place of a document.
///
/// Bindings lie in the order of their declaration, inner ones behind outer ones. What preserved
/// content has to carry of them is shared between the objects until a declaration comes or goes.
class NamespaceScope {
public:
  /// Drops all declarations; the default namespace is again that of an empty document.
  void Clear();

  /// What unprefixed elements are in where nothing has been declared: `kKml` at first.
  void SetInitialDefault(Namespace ns);
  Namespace GetDefault() const { return default_; }

  /// Changes whenever a name may mean something else than before.
  unsigned GetGeneration() const { return generation_; }

  /// `kUnknown` for a prefix without a declaration.
  Namespace Lookup(const QChar* prefix, int length) const;
  /// With which content of the namespace is written; null for a prefix without a declaration.
  QString GetUri(const QChar* prefix, int length) const;

  /// Adds a declaration that an element at `depth` makes.
  void Declare(int depth, const QString& prefix, const QString& uri, Namespace ns,
               const QString& documentUrl);
  /// Ends the declarations of the element at `depth`, if it made any.
  void Pop(int depth);

  /// The URI in which unprefixed elements are; null where that is the KML namespace. Where the
  /// only default namespace of a document has ended, one that stands for none.
  QString GetForeignDefaultUri() const;

  enum Own {
    kListOwn,      ///< The element is written without its own declarations.
    kOwnInText,    ///< The element keeps its own declarations in its text.
    kOwnsTheScope, ///< The element's declarations count like those around it.
  };

  /// Brings into `list` what content of the element at `depth` needs to be written elsewhere: all
  /// declarations in scope that the root of a written document doesn't make by itself. Those that
  /// `list` can't take, since their prefix stands for something else there or around the element,
  /// go to `attributes`, to be written on the element.
  void Collect(int depth, Own own, NamespaceList& list, AttributeList& attributes);

  /// A measure of the memory and time that the lists built so far have cost. A list that objects
  /// share counts once. Grows with the number of declarations times that of the objects in a
  /// document made to that end.
  qint64 GetCost() const { return cost_; }

private:
  struct Binding {
    QString prefix;
    QString uri; ///< With which it's written.
    Namespace ns;
    bool listed;  ///< The root of a written document doesn't make it.
    int shadowed; ///< The outer binding of the prefix, or -1.
    RefPtr<UnknownNamespace> record;
  };
  struct Mark {
    int depth;
    int first;
  };

  static constexpr qint64 kCopyCost = 16; ///< Of one entry; comparing two costs 1.

  int Find(const QChar* prefix, int length) const;
  void InitDefault();
  const NamespaceList& GetSnapshot();

  mmvector<Binding> bindings_;
  mmvector<Mark> marks_;
  QHash<QString, int> newest_; ///< Index of the visible binding of each prefix.
  Namespace initialDefault_ = Namespace::kKml;
  Namespace default_ = Namespace::kKml;
  unsigned generation_ = 0;
  NamespaceList snapshot_;
  bool snapshotValid_ = false;
  qint64 cost_ = 0;
};

} // namespace vorrel::kestan
