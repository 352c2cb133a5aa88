#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/repetition.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/export.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/read/errorhandler.h"
#include "kestan/read/unknowncontent.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <memory>

class QTextCodec;

namespace vorrel::kestan {

class CharBuf;
class ExpatParser;
class Field;
class NamespaceScope;
class RawXml;
class ReferenceCheck;
class RootContent;
class Schema;
class SchemaObject;
class ThreadContext;
class Update;
class XmlCharString;
class XmlSource;
enum class FromStringResult;
struct TagInfo;

/// How grave an error of the document is.
enum HandleErrorHow {
  kErrorFatal = 0,
  kErrorRecoverable = 1, ///< The setting `kmlErrorHandling` decides.
  kFinding = 2,          ///< No error: only handlers that ask for findings hear of it.
};

/// Elements may be nested this deep unless `ExpatHandler::SetMaxElementDepth` says otherwise: deep
/// enough for any document that people make, and shallow enough for recursive walks of the tree.
inline constexpr int kMaxElementDepth = 1000;

/// The layer under all readers: turns the bytes of a document into calls with names, attributes
/// and text, and what comes of them into one object.
///
/// Buffers text, keeps the namespaces in scope, resolves names against schemas and grades errors.
/// A handler parses one document at a time, on one thread that has a `ThreadContext`; the objects
/// belong to that context.
class KESTAN_EXPORT ExpatHandler {
public:
  /// `url` is that of the document: the base of ids, or the path of the file to read. Objects get
  /// `access`, and live on `memoryManager` (null for the usual heap). `errorHandler` may be null.
  ExpatHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
               IErrorHandler* errorHandler);
  ExpatHandler(const ExpatHandler&) = delete;
  ExpatHandler& operator=(const ExpatHandler&) = delete;

  /// Parses KML, or KMZ as its content shows. A null `data` means the file that the handler's URL
  /// names. The result is null on failure (see `GetErrorText`), but also for a document that holds
  /// nothing to return: of a `Kml` root its feature is returned, or else its theme.
  static RefPtr<SchemaObject> LoadXml(ExpatHandler& handler, const unsigned char* data,
                                      std::size_t size);
  /// The same for plain XML, between `BeginParse` and `EndParse`.
  static RefPtr<SchemaObject> DoLoadXml(ExpatHandler& handler, const void* data, std::size_t size);

  /// Part of the library's start and stop.
  static void Startup();
  static void Shutdown();

  /// Serves the handlers that were made without an error handler of their own. Takes a reference;
  /// null removes it. While no thread parses.
  static void SetDefaultErrorHandler(IErrorHandler* handler);

  /// The deepest nesting of elements that is read, for the whole process; a value below 1 brings
  /// back `kMaxElementDepth`. A deeper document ends with a fatal error.
  static void SetMaxElementDepth(int depth);
  static int GetMaxElementDepth();

  /// First object of the document, such as the `Kml` around what `LoadXml` returned. Null after a
  /// failure.
  SchemaObject* GetRoot() const { return root_.get(); }
  const QString& GetUrl() const { return url_; }

  /// Why the parse failed; null when it didn't.
  const QString& GetErrorText() const { return error_; }
  /// The same without file and place.
  const QString& GetBareErrorText() const { return bareError_; }
  /// What kind of failure that was; of meaning only after one.
  ReportCode GetErrorCode() const { return errorCode_; }
  /// The namespace of a root that nothing is known of, as it's declared; null after other failures.
  const QString& GetForeignNamespace() const { return foreignNamespace_; }
  /// Where it failed, both from 1; 0 when the failure has no place in the document.
  qint64 GetErrorLine() const { return errorLine_; }
  qint64 GetErrorColumn() const { return errorColumn_; }

  // Operations that readers replace, in the order of their slots. Names, values and text are
  // 16-bit; names and values end with a 0, attributes are pairs behind each other up to a null.
  virtual void StartElement(const unsigned short* name, const unsigned short** attrs) = 0;
  virtual void EndElement(const unsigned short* name) = 0;
  virtual void characters(const unsigned short* text, int length);
  /// Back to the empty state; also cleans up after a failed parse.
  virtual void Reset();
  virtual void BeginParse();
  virtual void EndParse();
  virtual ~ExpatHandler();

protected:
  /// True when the document isn't wanted any more. Asked again and again during a parse.
  virtual bool IsCancelled() const { return false; }

  /// False when the parse must stop.
  bool HandleError(const QString& message, HandleErrorHow how,
                   ReportCode code = ReportCode::kUnsupportedData);
  /// The same for a recoverable error of which the text is only made when somebody sees it.
  template <class MakeText> bool HandleRecoverable(ReportCode code, MakeText&& makeText) {
    return IgnoresErrors() || HandleError(makeText(), kErrorRecoverable, code);
  }
  /// True while somebody hears of findings. Nothing is looked for or formatted otherwise.
  bool WantsFindings() const { return references_ && !ignoreErrors_; }
  /// Tells of what stands at the present place.
  template <class MakeText> void ReportFinding(ReportCode code, MakeText&& makeText) {
    if (WantsFindings())
      HandleError(makeText(), kFinding, code);
  }
  // While somebody hears of findings:
  /// Looks at a text that a field has taken. `textPlace` is where it begins in `text_`, or -1.
  void CheckValue(const SchemaObject& object, const Field& field, const AttributeList* attrs,
                  const QString& text, int textPlace);
  void NoteId(const QString& id);
  /// Keeps the place of the present start tag, for findings in the text behind it.
  void NoteStart();
  bool HandleParseResult(FromStringResult result, const QString& text);
  void FatalError(const QString& text, ReportCode code = ReportCode::kRefused);
  /// Ends the parse at the present start tag, which can't be that of the document.
  void RefuseRoot();
  bool HasFailed() const { return fatal_; }

  /// Hands attributes to the object's attribute fields and keeps the unknown ones, without the
  /// pair at `skipIndex`.
  void HandleAttributes(SchemaObject& object, const unsigned short** attrs, int skipIndex);

  /// Takes the declarations out of the attributes of a start tag. Null when none are left.
  const unsigned short** PushNamespaces(const unsigned short** attrs);
  void PopNamespaces();
  Namespace LookupNamespace(const QString& prefix) const;
  Namespace GetDefaultNamespace() const;
  /// The default namespace of documents that declare none; `kKml` unless set.
  void SetDefaultNamespace(Namespace ns);
  /// Ends the parse when the URI names a version that is too new.
  Namespace NamespaceStringToEnum(const QString& uri);
  /// The name behind the prefix, and the namespace that it's in.
  const QString& StripNamespacePrefix(const QString& name, Namespace* ns);

  const Field* FindField(const Schema& schema, const QString& name, Namespace ns, Namespace* nsOut,
                         const Schema** schemaOut);
  const Schema* FindSchema(const QString& name);
  /// The URI of the namespace that a name is in by its declaration, where nothing is known of it;
  /// null for any other name.
  QString GetForeignUri(const QString& name) const;

  // Index of the pair in the attributes, or -1.
  int GetId(const unsigned short** attrs) const;
  int GetTargetId(const unsigned short** attrs) const;
  int GetTargetIndex(const unsigned short** attrs) const;
  int GetTargetIdIndex(const unsigned short** attrs) const;
  int GetAttrIndex(const unsigned short** attrs, const XmlCharString& name) const;

  /// The declarations that an object has to carry for `attributes`, which are its own or, with
  /// `ownElement`, those of a field element inside it, together with those that it carries already.
  /// Declarations that must stand beside the attributes are added to them. Good up to the next
  /// call.
  const NamespaceList& GetNamespacesFor(const SchemaObject& object, bool ownElement,
                                        AttributeList& attributes);
  /// Has the object carry the declarations around it, and adds those to `attributes` that must
  /// stand on the unknown element that begins; null for an element that keeps its own ones.
  /// `objectDepth` is that of the object's element.
  void CarryDeclarations(SchemaObject& object, int objectDepth, AttributeList* attributes);
  /// The same at the end of the element, for what its text mentions.
  void CarryMentioned(SchemaObject& object, int objectDepth, QStringView text);
  /// Counts bytes of text that the library makes stand in one more place. Ends the parse, and
  /// answers false, when that gets out of proportion to the document.
  bool CountRepeated(qint64 bytes);
  /// Ends the parse when ids were made up so that finding them costs far more than the document is
  /// long.
  void CheckLookupCost();
  /// Ends the parse at an element that is nested too deeply, or at a text that is too long. False
  /// when it ended.
  bool CheckDepth();
  bool CheckTextLength();
  /// Ends the parse when a check far below has left a text in the thread's context.
  bool CheckFatalText();

  /// True while unknown content is kept rather than dropped.
  bool KeepsUnknown() const {
    return unknownContent_ == UnknownContent::kAsSet ? !discardUnknown_
                                                     : unknownContent_ == UnknownContent::kKept;
  }
  /// True for an attribute that speaks to the reader, and isn't the object's.
  virtual bool IsOwnAttribute(const unsigned short** attrs, int index) const;
  /// The line of the document at which the parse has come, from 1.
  qint64 GetLine() const;

  /// A string of the characters up to the 0.
  static QString ToString(const unsigned short* characters);
  /// `text` with other characters, in the same memory when nobody else refers to it.
  /// The name of the tag at hand, as it stands in the document.
  const QString& GetTagName() const { return knownName_ ? *knownName_ : otherName_; }
  /// A copy of the text without room to grow. Documents give the same names again and again:
  /// objects share them.
  QString Share(const QString& text);
  static void Assign(QString& text, const unsigned short* characters);
  static void Assign(QString& text, const QChar* characters, int length);

  mmvector<TagInfo> tagStack_;
  UnknownContent unknownContent_ = UnknownContent::kAsSet; ///< For content that begins here.
  int skipDepth_ = 0;             ///< Above 0 while inside unknown content.
  int depth_ = 0;                 ///< Depth of elements outside of unknown content.
  std::unique_ptr<CharBuf> text_; ///< Character data of the element now open.
  std::unique_ptr<RawXml> raw_;   ///< Writes unknown content into `text_`.
  AttributeList fieldAttrs_;      ///< Attributes of the field element now open.
  RefPtr<SchemaObject> root_;
  const unsigned access_;
  QString url_;
  MemoryManager* const memoryManager_;
  Update* editTarget_ = nullptr; ///< Where fields record their edits instead of changing objects.
  /// The name of the start tag at an address that stands for it as long as the document is parsed;
  /// null for a name that hasn't been kept, which `otherName_` holds.
  const QString* knownName_ = nullptr;
  QString otherName_;
  QString attributeName_;
  QString attributeValue_;
  std::array<QString, 64> recentValues_; ///< Of attributes.
  ThreadContext* const threadContext_;
  std::uint64_t formerExcessSteps_ = 0; ///< Those of the thread before this parse.
  std::unique_ptr<NamespaceScope> namespaces_;
  std::unique_ptr<RootContent> rootContent_;
  qint64 firstLine_ = 1; ///< Number of the first line, for a document that is part of another.

private:
  friend class ExpatParser;

  class Resources;

  /// The document in the bytes or the file, of which `unpacked` holds what came out of an archive.
  /// Null when there's none, with the reason in the error text.
  std::unique_ptr<XmlSource> OpenBytes(const unsigned char* data, std::size_t size,
                                       QByteArray& unpacked);
  std::unique_ptr<XmlSource> OpenFile(QByteArray& unpacked);
  RefPtr<SchemaObject> Load(XmlSource& source);
  RefPtr<SchemaObject> ReadWhole(XmlSource& source);
  bool Parse(XmlSource& source);
  bool StartAnew(XmlSource& source);
  int ParseOnce(XmlSource& source, const char* encoding, QTextCodec* codec);
  RefPtr<SchemaObject> GetResult();
  RefPtr<SchemaObject> ReadOtherContent();

  // Called by the parser.
  void StartCdata();
  void EndCdata();
  /// Room for text that goes into the buffer as it is; null when it has to go through
  /// `characters`. The end of what was put there follows.
  ushort* GetPlaceForText(int length);
  void EndPlaceForText(const ushort* end);
  /// Ends the parse when it isn't wanted any more; true then.
  bool CheckCancelled();
  void RefuseAttributes();
  void RefuseName();
  void ReportSkippedEntity(const QString& name);

  bool IgnoresErrors() const;
  IErrorHandler* GetErrorHandler() const;
  void Fail(const QString& text, const QString& bareText, ReportCode code);
  void FailForMemory();
  void FailToRead();
  void ForgetFailure();
  void SendFinding(const ParseReport& finding);
  void MoveToText(int place, ParseReport& report) const;
  void NoteReference(const SchemaObject& object, const QString& text, int textPlace);
  void ReportDanglingReferences();
  /// A report of what stands at the present place.
  ParseReport MakeReport(const QString& message, ReportCode code) const;
  QString GetElementPath() const;
  /// True for a report that was made when the document was begun in another encoding.
  bool HasBeenTold() { return ++reports_ <= formerReports_; }
  bool Report(const QString& fullText, const QString& message, ReportCode code);

  std::unique_ptr<ExpatParser> parser_;
  std::unique_ptr<ReferenceCheck> references_; ///< Only while somebody asks for findings.
  qint64 startColumn_ = 0;
  bool discardUnknown_ = false;
  bool ignoreErrors_ = false;
  int reports_ = 0;       ///< Made in this run of the parser.
  int formerReports_ = 0; ///< Made in an earlier one, which began the document as well.
  Repetition repetition_;
  bool inCdata_ = false;
  QString error_;
  QString bareError_;
  QString foreignNamespace_;
  ReportCode errorCode_ = ReportCode::kRefused;
  qint64 errorLine_ = 0;
  qint64 errorColumn_ = 0;
  bool fatal_ = false;
  const RefPtr<IErrorHandler> errorHandler_;
  mmvector<const unsigned short*> plainAttributes_;
  QString localName_;
  NamespaceList mergedNamespaces_;

  static Resources* s_resources_;
  static IErrorHandler* default_error_handler_;
};

} // namespace vorrel::kestan
