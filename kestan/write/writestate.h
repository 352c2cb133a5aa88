#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/export.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/host/resourcedictionary.h"
#include "kestan/write/kmzfiles.h"
#include "kestan/write/objectset.h"
#include "kestan/write/rawxmlwriter.h"
#include "kestan/write/rootnamespaces.h"
#include "kestan/write/utf8ostream.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <memory>
#include <optional>

namespace vorrel::kestan {

class AbstractLink;
class CustomSchema;
class Schema;
class SchemaObject;
class StyleSelector;

/// The context of one write: the text so far, what is being hoisted into a document, the ids and
/// namespaces of the output, and its destination.
///
/// The tree is walked into the buffer. All of it reaches the destination when the state is
/// finished, since the root's namespaces are known only then. One thread uses a state, and keeps
/// the tree still meanwhile.
class KESTAN_EXPORT WriteState {
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
  /// to. Both answer the failure text, empty when all went well. `unreadableFiles`: see
  /// `GetUnreadableFiles`.
  static QString WriteFile(const SchemaObject& object, const QString& path, const QString& hint,
                           bool hoist, bool keepRelativeUrls,
                           QStringList* unreadableFiles = nullptr);
  static QString WriteString(const SchemaObject& object, QByteArray& bytes, const QString& hint,
                             bool hoist);

  /// Sends everything to the destination, unless there's an error: then the destination stays as
  /// it was. Further calls do nothing.
  void Finish();

  WriteMode mode() const { return mode_; }
  bool keepRelativeUrls() const { return keepRelativeUrls_; }
  const QString& baseDir() const { return baseDir_; }
  const QString& fileName() const { return fileName_; }
  const QString& hint() const { return hint_; }

  /// The first failure text. Not empty, it stops the write.
  const QString& error() const { return error_; }
  void SetError(const QString& text) {
    if (error_.isEmpty())
      error_ = text;
  }

  /// Present depth of the elements.
  int indent() const { return indent_; }
  void SetIndent(int depth) { indent_ = depth; }
  /// Fields that equal their default are written too.
  bool writeDefaults() const { return writeDefaults_; }
  void SetWriteDefaults(bool write) { writeDefaults_ = write; }
  /// A style may switch `writeDefaults` on for its sub-styles.
  bool styleDefaultsEnabled() const { return styleDefaultsEnabled_; }

  /// The document so far: bytes and text as they are, and escaped.
  Utf8OStream& stream() { return stream_; }
  XmlUtf8OStream xml() { return XmlUtf8OStream(stream_); }
  WriteState& out(const char* text) {
    stream_ << text;
    return *this;
  }
  void WriteIndent();
  /// The indentation, "<", and the name behind the prefix of its namespace.
  void WriteTagStart(Namespace ns, const QString& name);
  /// "</", the name behind its prefix, ">" and a line feed.
  void WriteTagEnd(Namespace ns, const QString& name);
  /// The same for a name that is ready.
  void WriteTagStart(const QByteArray& tag);
  void WriteTagEnd(const QByteArray& tag);
  /// The same for the element of a class.
  void WriteTagStart(const Schema& schema);
  void WriteTagEnd(const Schema& schema);

  /// Preserved content: attributes for the start tag that the stream ends with, and elements.
  void WriteUnknownAttrs(const QString& text, const NamespaceList& namespaces);
  void WriteUnknownElements(const QString& text, const NamespaceList& namespaces);
  /// Declarations that the root has to carry. Those with an empty prefix don't reach it, nor those
  /// with a prefix that has another meaning there.
  void AddUnknownNamespaces(const NamespaceList& namespaces) { namespaces_.Add(namespaces); }

  // Hoisting. Each document that is being written has a set of styles and one of schemas.
  void PushStylesAndSchemas();
  void PopStylesAndSchemas();
  bool HasStylesOrSchemas() const;
  /// Objects that a reader finds on a server aren't hoisted, nor those that a document around this
  /// one, or inside it, writes. True for an object that wasn't there yet.
  bool AddStyle(const StyleSelector& style);
  /// True for a style that has been collected, or that a document around writes.
  bool HasStyle(const StyleSelector& style) const;
  bool AddSchema(const CustomSchema& schema);
  /// The styles that a document holds itself are written with it, whether something refers to them
  /// or not: another document may.
  void AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles);
  /// A style that is written where it stands, with a feature or a map below or with a document of
  /// its own. The latter may get another id in this output.
  void LeaveStyle(const StyleSelector& style, bool mayBeRenamed);
  /// When everything has been collected: gives ids to the styles of the innermost document, and a
  /// unique one to each inline style that something refers to and whose own name a reader can't
  /// find: a run-time one, or none.
  void AssignStyleIds();
  /// Only the outermost document walks all documents inside it, so that each is walked twice at
  /// most, however deep it lies.
  bool IsInOutermost() const { return styleSets_.size() <= 1; }
  /// While documents inside the one that is being written are walked, nothing is hoisted: they
  /// keep what is theirs.
  void EnterInnerDocument() { ++innerDocuments_; }
  void LeaveInnerDocument() { --innerDocuments_; }
  /// Write what was collected for the innermost document. Styles leave out what equals a default.
  void WriteStyles();
  void WriteSchemas();
  /// Gives each object an id that is unique in this output, and then writes them all.
  void WriteObjs(const ObjectSet& objects);
  /// The first of `id`0, `id`1 and so on that no style or schema of this output has.
  QString GenerateUniqueId(const QString& id);
  /// The id that the object carries in this output.
  QString GetObjectId(const SchemaObject& object) const;
  /// Where references of the whole output lead from: the base URL of its root. Without one, all
  /// that is written counts as of one document.
  void SetRootUrl(const QString& url) { rootUrl_ = url; }
  /// The text of a reference of `owner` to another object. It comes absolute where it would lead
  /// elsewhere out of this output: the owner is from another document, or the output is a file that
  /// may lie no longer beside the one that is referred to.
  QString GetReferenceUrl(const SchemaObject& owner, const QString& url) const;
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
  const QStringList& GetUnreadableFiles() const { return kmzFiles_.GetUnreadable(); }
  /// For clients: gives the archive a list of names, "textures.txt", and enters `value` there under
  /// `name` and `object`, in place of an earlier one.
  void AddResourceMapEntry(const QString& name, const QString& value, const QString& object);

  /// The declaration and the start tag of the root, in UTF-8. Complete after the walk.
  QByteArray GetPreamble() const;
  /// The end tag of the root.
  void WritePostamble();

private:
  using ObjectSets = mmvector<std::unique_ptr<ObjectSet>>;

  void WriteObjUrl(SchemaObject* object, const QString& url, const ObjectSets& sets);
  static bool Contains(const ObjectSets& sets, const SchemaObject& object);
  bool Hoist(const SchemaObject& object, const ObjectSets& sets);
  void AssignIds(const ObjectSet& objects);
  QString AssignId(const SchemaObject& object);
  bool IsTaken(const QString& id, const SchemaObject& object) const;
  bool ComesFromElsewhere(const QString& url) const;
  QString GetRelativeUrl(const QString& url) const;
  QString GetReadableUrl(const QString& url, const QString& absoluteUrl) const;
  QString GetDestinationFault();
  void WritePreamble();
  QString FinishBytes();
  QString FinishFile();
  QString FinishArchive();
  QString Extract(const QString& absoluteUrl);

  WriteMode mode_ = kWriteKmlFile;
  bool keepRelativeUrls_ = false;
  bool writeDefaults_ = false;
  bool styleDefaultsEnabled_ = true;
  bool finished_ = false;
  bool createdFile_ = false; ///< There was no file before.
  int indent_ = 0;
  std::optional<QString> rootUrl_;
  QString baseDir_; ///< Folder of the file in lower case, with a "/" behind.
  QString fileName_;
  QString hint_;
  QString error_;
  QByteArray* bytes_ = nullptr;
  Utf8OStream stream_;
  std::size_t preambleSize_ = 0; ///< Of what the stream begins with.
  RootNamespaces namespaces_;
  RawXmlWriter rawXml_{stream_, namespaces_};
  ObjectSets styleSets_;
  /// Those that are written where they stand, and whether they may get another id.
  QHash<const SchemaObject*, bool> leftStyles_;
  QHash<QString, const StyleSelector*> leftStylesById_; ///< Null where several have the id.
  ObjectSet nameless_; ///< What is referred to and has no name that a reader can follow.
  int innerDocuments_ = 0;
  ObjectSets schemaSets_; ///< Always as many as `styleSets_`.
  QHash<QString, const SchemaObject*> objectsById_;
  QHash<const SchemaObject*, QString> idsByObject_;
  bool namesNameless_ = false;             ///< An object without an id has one in this output.
  QHash<QString, int> nextSuffixes_;       ///< Where the search for a unique id goes on, by id.
  QHash<QString, QString> extractedFiles_; ///< References to files brought out of archives.
  QHash<QString, int> nextExtracts_;       ///< Where the search for a free name goes on, by name.
  SourceFiles sources_;
  KmzFiles kmzFiles_;
  ResourceDictionary resourceDictionary_;
};

} // namespace vorrel::kestan
