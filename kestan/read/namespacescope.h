#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <QHash>
#include <QString>
#include <QStringView>

namespace vorrel::kestan {

/// The namespace declarations in scope at one place of a document.
///
/// Bindings lie in the order of their declaration, inner ones behind outer ones.
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
  void Pop(int depth) {
    if (depth <= innermost_)
      End(depth);
  }

  /// The URI in which unprefixed elements are; null where that is the KML namespace. Where the
  /// only default namespace of a document has ended, one that stands for none.
  QString GetForeignDefaultUri() const;

  /// Where content stands that an object preserves.
  struct Place {
    int objectDepth;      ///< That of the object's element.
    qint64 documentBytes; ///< Read so far.
  };

  /// Sees to what the content of an element needs to be written elsewhere: the object's own
  /// element, or one inside that.
  ///
  /// `list`, the object's, gets what is declared around the content of the object. A declaration of
  /// an element inside the object joins it where its prefix is free; else it goes to `attributes`,
  /// to stand on the content. So a prefix has one meaning for all that an object preserves, apart
  /// from what elements say themselves. `attributes` is null for an element that keeps its
  /// declarations in any case.
  ///
  /// Objects share the list. Where each would need a list of its own, and those would get out of
  /// proportion to the document, declarations stay on elements, and an object carries only those
  /// that its content mentions: see `CarryMentioned`.
  void Carry(const Place& place, NamespaceList& list, AttributeList* attributes);
  /// Adds what `text`, which is part of the object's content, mentions and `list` lacks.
  void CarryMentioned(const Place& place, QStringView text, NamespaceList& list);

private:
  struct Binding {
    QString prefix;
    QString uri; ///< With which it's written.
    Namespace ns;
    bool listed;  ///< The root of a written document doesn't make it.
    int shadowed; ///< The outer binding of the prefix, or -1.
    RefPtr<UnknownNamespace> record;
  };
  /// The declarations of one element.
  struct Mark {
    int depth;
    int first;
    NamespaceList snapshot; ///< What is visible behind them; made when it's needed.
    bool hasSnapshot = false;
  };
  /// What elements inside an open object have added to its list.
  struct Additions {
    int objectDepth;
    QHash<QString, NamespaceList::size_type> places; ///< In the list, by prefix.
  };

  // Entries of lists that a document of any length may copy, and how many bytes add another one:
  // fewer than a declaration has, so that what is declared once can be copied once.
  static constexpr qint64 kFreeEntries = qint64(1) << 18;
  static constexpr qint64 kBytesPerEntry = 4;

  int Find(const QChar* prefix, int length) const;
  void InitDefault();
  void End(int depth);
  void EndDeclarations();
  int FindBelow(const QString& prefix, std::size_t end) const;
  std::size_t GetMarks(int depth) const;
  bool Afford(std::size_t entries, qint64 documentBytes);
  void MakeSnapshot(Mark& mark, std::size_t end);
  void CarryOwn(std::size_t first, const Place& place, NamespaceList& list,
                AttributeList& attributes);

  mmvector<Binding> bindings_;
  mmvector<Mark> marks_;
  QHash<QString, int> newest_; ///< Index of the visible binding of each prefix.
  Namespace initialDefault_ = Namespace::kKml;
  Namespace default_ = Namespace::kKml;
  unsigned generation_ = 0;
  int innermost_ = -1; ///< The depth of the innermost element of which something is noted.
  mmvector<Additions> additions_; ///< Outer objects first.
  qint64 copiedEntries_ = 0;
  bool isPartial_ = false; ///< Some objects carry only what they mention.
};

} // namespace vorrel::kestan
