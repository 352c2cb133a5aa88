#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"

#include <QString>

namespace vorrel::kestan {

class SchemaObject;

/// The unknown elements of a document's root. When the root is only a wrapper, what it can't hold
/// goes to the object inside it, since that one is written.
class RootContent {
public:
  void Clear() { elements_.clear(); }
  /// An element that begins at `position` of the root's unknown text.
  void Add(const QString& localName, Namespace ns, int position, int nameLength);

  /// Gives `feature` the unknown attributes, elements and declarations of `root`, in front of its
  /// own. An attribute that the feature has itself is left out. An element that would mean
  /// something inside the feature is kept within an element named like the root.
  void MoveTo(SchemaObject& feature, const SchemaObject& root) const;

  /// When the root holds nothing but one element of a known class: that element as a document of
  /// its own, with all declarations. Else the null string.
  QString GetDocument(const SchemaObject& root) const;
  /// Gives `object`, which was that document, the unknown attributes of `root`.
  static void MoveAttributesTo(SchemaObject& object, const SchemaObject& root);

private:
  struct Element {
    QString localName;
    Namespace ns;
    int position;
    int nameEnd;
  };

  static NamespaceList MoveAttributes(SchemaObject& object, const UnknownData& from);

  mmvector<Element> elements_;
};

} // namespace vorrel::kestan
