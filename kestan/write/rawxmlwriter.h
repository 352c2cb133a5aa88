#pragma once

#include "kestan/core/unknowndata.h"
#include "kestan/write/rootnamespaces.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace vorrel::kestan {

class Utf8OStream;

/// Writes preserved XML so that the document stays well-formed for a parser with namespaces.
///
/// Each prefix keeps the meaning that it had where the text was read. It's declared on the root if
/// it can be; else elements carry the declaration with them, and attributes get another prefix. A
/// prefix that was declared nowhere gets a URI all the same. What isn't well-formed is mended:
/// stray characters are escaped, elements are closed, and no attribute stands twice on a tag.
class RawXmlWriter {
public:
  RawXmlWriter(Utf8OStream& stream, RootNamespaces& root) : stream_(stream), root_(root) {}

  /// The declarations that the next texts were read with. They go to the root as far as they can.
  void SetScope(const NamespaceList& namespaces);
  /// Adds attributes to the start tag that the stream ends with. Those that are there win.
  void WriteAttributes(const QString& text);
  void WriteElements(const QString& text);

private:
  struct Attribute {
    QStringView name;
    QStringView value; ///< Escaped.
  };
  struct Element {
    QStringView name;
    std::size_t declared; ///< Size of `localPrefixes_` before its own ones.
  };

  static QStringView TakeName(QStringView& text);
  static bool TakeAttribute(QStringView& text, Attribute& attribute);
  static std::vector<Attribute> TakeAttributes(QStringView& text);

  QString Resolve(const QString& prefix);
  QString UsePrefix(QStringView prefix);
  bool IsFirst(const QString& name);
  void WriteAttribute(const Attribute& attribute, const QString& prefix);
  void WriteValue(QStringView value);
  void CollectAttributesOfOpenTag();

  /// Each takes one item from the front of `text`; false, and nothing taken, when it isn't there.
  bool TakeMarkup(QStringView& text);
  bool TakeStartTag(QStringView& text);
  bool TakeEndTag(QStringView& text);
  void DropBadDeclarations(std::vector<Attribute>& attributes);
  void InsertLater(const Attribute& declaration);
  void WriteRawAttribute(const Attribute& attribute);
  void CloseElement();
  void InsertDeclarations();

  Utf8OStream& stream_;
  RootNamespaces& root_;
  NamespaceList scope_;
  QHash<QString, QString> resolved_; ///< URIs of the prefixes of `scope_` that were asked for.
  QSet<QString> seen_;               ///< Attributes of one tag, those with a prefix by its URI.

  // The elements of one text.
  std::vector<Element> open_;
  std::vector<QString> localPrefixes_; ///< Declared by the open elements, outermost first.
  QHash<QString, std::vector<QString>> localUris_; ///< By prefix; the innermost one is last.
  QMap<QString, QString> declarations_;            ///< Attributes that the outermost element needs.
  std::size_t insertAt_ = 0;                       ///< Their place in the stream.
};

} // namespace vorrel::kestan
