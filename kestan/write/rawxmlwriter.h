#pragma once

#include "kestan/core/repetition.h"
#include "kestan/core/unknowndata.h"
#include "kestan/read/prefixes.h"
#include "kestan/write/attributetext.h"
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
/// Each prefix keeps the meaning that it had where the text was read, in names and in values that
/// mention it. Where the root doesn't give it that meaning, a declaration stands on the element:
/// the outermost preserved one, or the one of ours that has the attributes. Only where one of ours
/// needs the prefix for itself does an attribute get another. A prefix that was declared nowhere
/// gets a URI all the same. What isn't well-formed is mended: stray characters are escaped,
/// elements are closed, and no attribute stands twice on a tag.
class RawXmlWriter {
public:
  RawXmlWriter(Utf8OStream& stream, RootNamespaces& root) : stream_(stream), root_(root) {}

  /// The declarations that the next texts were read with. They go to the root as far as they can.
  void SetScope(const NamespaceList& namespaces);
  /// Adds attributes to the start tag that the stream ends with. Those that are there win. A leaf
  /// holds no further elements of ours.
  void WriteAttributes(const QString& text, bool isLeaf);
  void WriteElements(const QString& text);

  /// True when declarations take up more than is in proportion to the document.
  bool RepeatsTooMuch() const { return repeatsTooMuch_; }

private:
  struct Element {
    QStringView name;
    std::size_t declared; ///< Size of `localPrefixes_` before its own ones.
  };
  struct LocalUri {
    QString uri;
    bool isInText; ///< It stands on an inner element, and not among `declarations_`.
  };

  bool FindUri(const QString& prefix, QString& uri, bool& isInText) const;
  void UseMentioned(QStringView text);
  QString UsePrefix(QStringView prefix);
  void Require(const QString& prefix, const QString& uri);
  QString GetAttributeUri(const TextAttribute& attribute) const;
  void RequireOnOpenTag(const QString& prefix, const QString& uri, bool isLeaf);
  QString GetPrefixOnOpenTag(const QString& prefix, const QString& uri);
  bool IsFirst(const QString& name);
  void WriteAttribute(const TextAttribute& attribute, const QString& prefix);
  void WriteValue(QStringView value);
  void CollectOpenTag();
  void WriteDeclarations(Utf8OStream& stream);
  void DeclareLocally(const std::vector<TextAttribute>& attributes, bool isInText);
  void DropLocal(std::size_t size);

  /// Each takes one item from the front of `text`; false, and nothing taken, when it isn't there.
  bool TakeMarkup(QStringView& text);
  bool TakeStartTag(QStringView& text);
  bool TakeEndTag(QStringView& text);
  void WriteStartTagAttributes(const std::vector<TextAttribute>& attributes, bool isOutermost);
  void DropBadDeclarations(std::vector<TextAttribute>& attributes);
  void CloseElement();
  void InsertDeclarations();

  Utf8OStream& stream_;
  RootNamespaces& root_;
  CarriedPrefixes scope_;
  QSet<QString> seen_; ///< Attributes of one tag, those with a prefix by its URI.
  QHash<QString, QString>
      tagPrefixes_; ///< Of the open tag: with their URIs, if they aren't the root's.

  // The elements of one text.
  std::vector<Element> open_;
  std::vector<QString> localPrefixes_; ///< Declared by the open elements, outermost first.
  QHash<QString, std::vector<LocalUri>> localUris_; ///< By prefix; the innermost one is last.
  QMap<QString, QString> declarations_; ///< Attributes that the outermost element needs.
  std::size_t insertAt_ = 0;            ///< Their place in the stream.
  Repetition repetition_;
  bool repeatsTooMuch_ = false;
};

} // namespace vorrel::kestan
