#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"

#include <QString>

#include <functional>

namespace vorrel::kestan {

class SchemaObject;

/// The unknown elements of a document's root. When the root is only a wrapper, what it can't hold
/// goes to the object inside it, since that one is written.
class RootContent {
public:
  /// Asked before so many characters of text are repeated; false when that's too many.
  using MayRepeat = std::function<bool(qint64)>;

  void Clear() { elements_.clear(); }
  /// An element that begins at `position` of the root's unknown text.
  void Add(const QString& localName, Namespace ns, int position, int nameLength);

  /// Gives `feature` the unknown attributes, elements and declarations of `root`, in front of its
  /// own. What would mean something else in the feature is kept there within an element named like
  /// the root: an element or attribute that the feature knows, an attribute that it has itself, and
  /// one with a prefix that it uses otherwise. An element with such a prefix declares it. False
  /// when that repeats too much text.
  bool MoveTo(SchemaObject& feature, const SchemaObject& root, const MayRepeat& mayRepeat) const;

  /// When the root holds nothing but one element of a known class: that element as a document of
  /// its own, with all declarations. Else the null string.
  QString GetDocument(const SchemaObject& root) const;
  /// Gives `object`, which was that document, the unknown attributes of `root`.
  static bool MoveAttributesTo(SchemaObject& object, const SchemaObject& root,
                               const MayRepeat& mayRepeat);

private:
  class Move;

  struct Element {
    QString localName;
    Namespace ns;
    int position;
    int nameEnd;
  };

  mmvector<Element> elements_;
};

} // namespace vorrel::kestan
