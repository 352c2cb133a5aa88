#pragma once

#include "kestan/core/unknowndata.h"
#include "kestan/host/export.h"
#include "kestan/write/tagstream.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace vorrel::kestan {

class AbstractLink;
class CustomSchema;
class OutputUrls;
class SchemaObject;
class StyleHoist;
class StyleSelector;

/// The context of one write: the text so far, and what ties it to the rest of its output, that is
/// the styles and ids of its documents, its URLs and files, its namespaces and its destination.
///
/// The tree is walked into the text. All of it reaches the destination when the state is finished,
/// since the root's namespaces are known only then. One thread uses a state, and keeps the tree
/// still meanwhile.
class KESTAN_EXPORT WriteState final : public TagStream {
public:
  enum WriteMode {
    kWriteKmlFile = 0,
    kWriteKmzFile = 1,
    kWriteByteArray = 2,
  };

  /// For a file: an archive when the name ends in ".kmz", in any case. A name without a suffix gets
  /// ".kml". `error` tells when it can't be written; otherwise an empty file is there from now on.
  /// With `keepRelativeUrls`, URLs keep their text, except in an archive.
  WriteState(const QString& fileName, const QString& hint, bool keepRelativeUrls);
  /// For KML in `bytes`, which must live until the state is finished.
  WriteState(QByteArray& bytes, const QString& hint);
  WriteState(const WriteState&) = delete;
  WriteState& operator=(const WriteState&) = delete;
  /// Finishes.
  ~WriteState();

  /// Write one object with all below it: with `hoist`, behind the styles and schemas that it refers
  /// to. Both answer the failure text, empty when all went well.
  static QString WriteFile(const SchemaObject& object, const QString& path, const QString& hint,
                           bool hoist, bool keepRelativeUrls);
  static QString WriteString(const SchemaObject& object, QByteArray& bytes, const QString& hint,
                             bool hoist);

  /// Writes one object with all below it, by `flags` from `WriteFlag`, and finishes. A document
  /// that has to be put around it gets the file's `name`. Answers the failure text.
  const QString& Write(const SchemaObject& object, const QString& name, unsigned flags);
  /// Sends everything to the destination, unless there's an error: then the destination stays as
  /// it was. Further calls do nothing.
  void Finish();

  WriteMode mode() const;
  /// The file that is being written; empty for bytes.
  const QString& fileName() const;
  const QString& hint() const { return hint_; }

  /// The first failure text. Not empty, it stops the write.
  const QString& error() const { return error_; }
  void SetError(const QString& text) {
    if (error_.isEmpty())
      error_ = text;
  }

  /// False where an element at the present depth is deeper than any reader goes: then the write has
  /// failed, and nobody need go further down.
  bool CheckDepth() {
    if (indent() <= kMaxDepth)
      return true;
    FailTooDeep();
    return false;
  }

  /// Fields that equal their default are written too.
  bool writeDefaults() const { return writeDefaults_; }
  void SetWriteDefaults(bool write) { writeDefaults_ = write; }
  /// A style may switch `writeDefaults` on for its sub-styles.
  bool styleDefaultsEnabled() const { return styleDefaultsEnabled_; }
  void SetStyleDefaultsEnabled(bool enabled) { styleDefaultsEnabled_ = enabled; }

  WriteState& out(const char* text) {
    stream() << text;
    return *this;
  }

  /// Preserved content: attributes for the start tag that the stream ends with, and elements. A
  /// leaf is an element that holds no others but unknown ones.
  void WriteUnknownAttrs(const QString& text, const NamespaceList& namespaces, bool isLeaf = false);
  void WriteUnknownElements(const QString& text, const NamespaceList& namespaces);
  /// Declarations that the root has to carry. Those with an empty prefix don't reach it, nor those
  /// with a prefix that has another meaning there.
  void AddUnknownNamespaces(const NamespaceList& namespaces);

  // Hoisting. Each document that is being written has a set of styles and one of schemas; outside
  // of documents there is none, and nothing is hoisted.
  void PushStylesAndSchemas();
  void PopStylesAndSchemas();
  bool HasStylesOrSchemas() const;
  /// Objects that a reader finds on a server aren't hoisted, nor those that a document around this
  /// one, or inside it, writes. True for an object that wasn't there yet.
  bool AddStyle(const StyleSelector& style);
  bool AddSchema(const CustomSchema& schema);
  /// The first of `id`0, `id`1 and so on that no style or schema of this output has.
  QString GenerateUniqueId(const QString& id);
  /// The id that the object carries in this output.
  QString GetObjectId(const SchemaObject& object) const;
  /// Writes a reference: to a hoisted object by its id, else by `url`. `object` may be null.
  void WriteObjUrl(SchemaObject* object, const QString& url);

  /// The text of a URL in this output; `absoluteUrl` is what it means now.
  ///
  /// In an archive, `embed` asks for a copy of the local file, from an archive too, and the text
  /// leads to that copy; what can't be read stays outside, and the text goes on leading to it. In a
  /// KML file, what lies in an archive is brought out beside the document. Texts that are kept as
  /// they are change all the same where `owner`, which may be null, comes from another document.
  QString RegisterUrl(const QString& url, const QString& absoluteUrl, bool embed,
                      const SchemaObject* owner = nullptr);
  /// The same for the `href` of a link.
  QString RegisterLink(const AbstractLink& link);
  /// The local files that were to be in the archive and couldn't be read. Complete when the state
  /// is finished.
  const QStringList& GetUnreadableFiles() const;
  /// The local files that didn't come into the archive since they aren't the document's own.
  const QStringList& GetOutsideFiles() const;
  /// For clients: gives the archive a list of names, "textures.txt", and enters `value` there under
  /// `name` and `object`, in place of an earlier one.
  void AddResourceMapEntry(const QString& name, const QString& value, const QString& object);

  /// The declaration and the start tag of the root, in UTF-8. Complete after the walk.
  QByteArray GetPreamble() const;
  /// The end tag of the root.
  void WritePostamble();

  /// For the library's own classes: the parts themselves.
  StyleHoist& hoist();
  OutputUrls& urls();

private:
  struct Parts;

  void CheckRepetition();
  /// Of the 1,000 levels that a reader takes, the root is one, and its child has depth 0.
  static constexpr int kMaxDepth = 998;

  void FailTooDeep();
  void WritePreamble();

  bool writeDefaults_ = false;
  bool styleDefaultsEnabled_ = true;
  bool finished_ = false;
  QString hint_;
  QString error_;
  std::unique_ptr<Parts> parts_;
};

} // namespace vorrel::kestan
