#include "kestan/read/expathandler.h"

#include "kestan/core/kestanoptions.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/attributevalue.h"
#include "kestan/host/kmz.h"
#include "kestan/host/path.h"
#include "kestan/host/tr.h"
#include "kestan/read/charbuf.h"
#include "kestan/read/expatparser.h"
#include "kestan/read/loadobserver.h"
#include "kestan/read/namespaces.h"
#include "kestan/read/namespacescope.h"
#include "kestan/read/rawxml.h"
#include "kestan/read/referencecheck.h"
#include "kestan/read/rootcontent.h"
#include "kestan/read/taginfo.h"
#include "kestan/read/xmlcharstring.h"
#include "kestan/read/xmlsource.h"
#include "kestan/style/styleclimbbatch.h" // styles get their owners while a document is read

#include <QFileInfo>

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace vorrel::kestan {

namespace {

constexpr char kFallbackEncoding[] = "ISO-8859-1";
constexpr int kNameReserve = 32;
constexpr int kValueReserve = 128;

/// Notes on the thread, for the length of a scope, that what exists by now isn't of this document.
class ParseMark {
public:
  explicit ParseMark(ThreadContext& context) : context_(context), former_(context.parseRevision) {
    context_.parseRevision = ObjectObserver::NextRevision();
  }
  ParseMark(const ParseMark&) = delete;
  ParseMark& operator=(const ParseMark&) = delete;
  ~ParseMark() { context_.parseRevision = former_; }

private:
  ThreadContext& context_;
  const std::uint32_t former_;
};

int Length(const unsigned short* text) {
  return static_cast<int>(
      std::char_traits<char16_t>::length(reinterpret_cast<const char16_t*>(text)));
}

const unsigned short* FindColon(const unsigned short* name) {
  while (*name && *name != ':')
    ++name;
  return *name ? name : nullptr;
}

/// Tells whether an attribute declares a namespace, and the length of the name up to the prefix.
bool IsDeclaration(const unsigned short* name, int* prefixStart) {
  static constexpr char kXmlns[] = "xmlns";
  for (int i = 0; i < 5; ++i) {
    if (name[i] != static_cast<unsigned char>(kXmlns[i]))
      return false;
  }
  if (name[5] == 0) {
    *prefixStart = 5;
    return true;
  }
  *prefixStart = 6;
  return name[5] == ':' && name[6] != 0;
}

bool MayBeWrongEncoding(int code) {
  return code == XML_ERROR_INVALID_TOKEN || code == XML_ERROR_UNKNOWN_ENCODING ||
         code == XML_ERROR_INCORRECT_ENCODING;
}

/// The child of the class of this name that a root holds.
SchemaObject* GetChild(const SchemaObject& root, QLatin1String className) {
  for (const Field* const field : root.GetSchema().GetObjectFields()) {
    const Schema* const schema = field->GetObjSchema();
    if (schema && schema->GetName() == className)
      return field->GetObject(root, -1);
  }
  return nullptr;
}

} // namespace

/// Attribute names in the form in which the parser gives them.
class ExpatHandler::Resources {
public:
  const XmlCharString id{"id"};
  const XmlCharString targetId{"targetId"};
  const XmlCharString targetIndex{"targetIndex"};
  const XmlCharString targetIdIndex{"targetIdIndex"};
};

ExpatHandler::Resources* ExpatHandler::s_resources_ = nullptr;

void ExpatHandler::Startup() {
  if (!s_resources_)
    s_resources_ = new Resources;
}

void ExpatHandler::Shutdown() {
  delete s_resources_;
  s_resources_ = nullptr;
}

ExpatHandler::ExpatHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
                           IErrorHandler* errorHandler)
    : text_(new CharBuf), raw_(new RawXml(*text_)), access_(access), url_(url),
      memoryManager_(memoryManager), threadContext_(ThreadContext::GetCurrent()),
      namespaces_(new NamespaceScope), rootContent_(new RootContent), errorHandler_(errorHandler) {
  ExpatHandler::Reset();
  tagStack_.reserve(32);
  plainAttributes_.reserve(8);
  otherName_.reserve(kNameReserve);
  localName_.reserve(kNameReserve);
  attributeName_.reserve(kNameReserve);
  attributeValue_.reserve(kValueReserve);
  threadContext_->fatalText.clear();
}

ExpatHandler::~ExpatHandler() { ExpatHandler::Reset(); }

RefPtr<SchemaObject> ExpatHandler::LoadXml(ExpatHandler& handler, const unsigned char* data,
                                           std::size_t size) {
  const ParseMark mark(*handler.threadContext_);
  handler.BeginParse();
  if (handler.CheckCancelled())
    return {};
  QByteArray unpacked;
  std::unique_ptr<XmlSource> source;
  try {
    source = data ? handler.OpenBytes(data, size, unpacked) : handler.OpenFile(unpacked);
  } catch (const std::bad_alloc&) {
    handler.FailForMemory();
  }
  if (!source)
    return {};
  file::CleanupPathname(handler.url_);
  RefPtr<SchemaObject> result = handler.Load(*source);
  handler.EndParse();
  if (System::IsMainThread())
    LoadObserver::UpdateAllLater(); // some may have waited for this document
  return result;
}

std::unique_ptr<XmlSource> ExpatHandler::OpenBytes(const unsigned char* data, std::size_t size,
                                                   QByteArray& unpacked) {
  if (!kmz::IsKmzData(data, size))
    return std::make_unique<MemoryXmlSource>(data, size);
  constexpr std::size_t kMaxArchive = std::numeric_limits<int>::max() / 2;
  const QByteArray archive = QByteArray::fromRawData(reinterpret_cast<const char*>(data),
                                                     static_cast<int>(std::min(size, kMaxArchive)));
  QString reason;
  unpacked = kmz::UnzipBytes(archive, QString(), &reason);
  if (!unpacked.isNull())
    return std::make_unique<MemoryXmlSource>(unpacked.constData(),
                                             static_cast<std::size_t>(unpacked.size()));
  FatalError(reason, ReportCode::kUnreadable);
  return nullptr;
}

std::unique_ptr<XmlSource> ExpatHandler::OpenFile(QByteArray& unpacked) {
  url_ = QFileInfo(url_).absoluteFilePath();
  bool exists = true;
  if (kmz::IsKmzFile(url_, &exists)) {
    QString reason;
    unpacked = kmz::UnzipFile(url_, QString(), &reason);
    if (!unpacked.isEmpty())
      return std::make_unique<MemoryXmlSource>(unpacked.constData(),
                                               static_cast<std::size_t>(unpacked.size()));
    QString text = tr("Could not parse zero byte kmz file \"%1\"").arg(url_);
    if (!reason.isEmpty())
      text += QLatin1String(":\n\n\t") + reason;
    FatalError(text, ReportCode::kUnreadable);
    return nullptr;
  }
  auto source = std::make_unique<FileXmlSource>(url_);
  if (exists && source->Open())
    return source;
  FailToRead();
  return nullptr;
}

RefPtr<SchemaObject> ExpatHandler::DoLoadXml(ExpatHandler& handler, const void* data,
                                             std::size_t size) {
  MemoryXmlSource source(data, size);
  return handler.Load(source);
}

RefPtr<SchemaObject> ExpatHandler::Load(XmlSource& source) {
  const StyleClimbBatch batch;
  const NotificationDeferrer deferrer;
  RefPtr<SchemaObject> result;
  try {
    result = ReadWhole(source);
  } catch (const std::bad_alloc&) {
    FailForMemory();
    Reset();
  }
  knownName_ = nullptr; // the parser's
  parser_.reset();
  text_->free();
  attributeValue_ = QString();
  // A parse around this one, on whose behalf a client reads another document, goes on.
  threadContext_->fatalText.clear();
  return result;
}

RefPtr<SchemaObject> ExpatHandler::ReadWhole(XmlSource& source) {
  RefPtr<SchemaObject> result;
  if (Parse(source)) {
    ReportDanglingReferences();
    result = GetResult();
  }
  if (!fatal_)
    return result;
  Reset();
  return {};
}

int ExpatHandler::ParseOnce(XmlSource& source, const char* encoding, QTextCodec* codec) {
  parser_ = std::make_unique<ExpatParser>(*this, encoding, codec);
  return parser_->Parse(source);
}

/// Back to the start of the document, for another run of the parser.
bool ExpatHandler::StartAnew(XmlSource& source) {
  const bool ignored = ignoreErrors_;
  const int reports = std::max(reports_, formerReports_);
  Reset();
  ignoreErrors_ = ignored;
  formerReports_ = reports;
  return source.Rewind();
}

bool ExpatHandler::Parse(XmlSource& source) {
  int result = ParseOnce(source, nullptr, nullptr);
  if (result == ExpatParser::kOtherCodec) {
    QTextCodec* const codec = parser_->GetCodec();
    result = StartAnew(source) ? ParseOnce(source, nullptr, codec) : ExpatParser::kReadFailed;
  }
  if (result == ExpatParser::kFailed && !fatal_ && MayBeWrongEncoding(parser_->GetErrorCode())) {
    result = StartAnew(source) ? ParseOnce(source, kFallbackEncoding, nullptr)
                               : ExpatParser::kReadFailed;
  }
  if (fatal_)
    return false;
  if (result == ExpatParser::kParsed)
    return true;
  if (result == ExpatParser::kReadFailed) {
    FailToRead();
    return false;
  }
  const QString bare = parser_->GetErrorString();
  Fail(tr("Parse error at line %1, column %2:\n\n\t%3",
          "Error message shown when KML cannot be parsed correctly. VAL_1 is a line number, VAL_2 "
          "the column number where error occured, VAL_3 the actual error message from the parser.")
           .arg(QString::number(GetLine()), QString::number(parser_->GetColumn()), bare),
       bare, ReportCode::kMalformedXml);
  return false;
}

RefPtr<SchemaObject> ExpatHandler::GetResult() {
  if (!root_ || !root_->isOfType(QStringLiteral("kml")))
    return root_;
  SchemaObject* const feature = GetChild(*root_, QLatin1String("AbstractFeature"));
  if (!feature) {
    SchemaObject* const theme = GetChild(*root_, QLatin1String("Theme"));
    return theme ? RefPtr<SchemaObject>(theme) : ReadOtherContent();
  }
  if (!rootContent_->MoveTo(*feature, *root_, [this](qint64 size) { return CountRepeated(size); }))
    return {};
  feature->SetHintTarget(root_->GetHintTarget());
  return RefPtr<SchemaObject>(feature);
}

/// Objects that are no features are written in a `kml` root all the same, which holds them as
/// unknown content then. Reads such an object.
RefPtr<SchemaObject> ExpatHandler::ReadOtherContent() {
  const QByteArray document = rootContent_->GetDocument(*root_).toUtf8();
  if (document.isEmpty())
    return {};
  const RefPtr<SchemaObject> root = root_;
  Reset();
  ignoreErrors_ = true; // The element has been reported as a whole.
  MemoryXmlSource source(document.constData(), static_cast<std::size_t>(document.size()));
  RefPtr<SchemaObject> object;
  if (Parse(source)) {
    object = root_;
    RootContent::MoveAttributesTo(*object, *root,
                                  [this](qint64 size) { return CountRepeated(size); });
    object->SetHintTarget(root->GetHintTarget());
  } else {
    ForgetFailure(); // a class of which there are no objects
  }
  root_ = root;
  return object;
}

void ExpatHandler::characters(const unsigned short* text, int length) {
  if (skipDepth_ == 0)
    text_->append(text, length);
  else if (!KeepsUnknown())
    return;
  else if (inCdata_)
    raw_->AppendCdata(text, length);
  else
    raw_->AppendText(text, length);
  CheckTextLength();
}

ushort* ExpatHandler::GetPlaceForText(int length) {
  return skipDepth_ == 0 && text_->GrowBy(length) ? text_->data() + text_->size() : nullptr;
}

void ExpatHandler::EndPlaceForText(const ushort* end) {
  text_->resize(static_cast<int>(end - text_->data()));
}

void ExpatHandler::StartCdata() {
  inCdata_ = true;
  raw_->StartCdata();
}

void ExpatHandler::EndCdata() {
  inCdata_ = false;
  if (skipDepth_ > 0 && KeepsUnknown())
    raw_->EndCdata();
}

void ExpatHandler::Reset() {
  // From the innermost object outwards: none of them holds another yet.
  while (!tagStack_.empty())
    tagStack_.pop_back();
  unknownContent_ = UnknownContent::kAsSet;
  skipDepth_ = 0;
  depth_ = 0;
  text_->clear();
  fieldAttrs_.clear();
  root_.reset();
  rootContent_->Clear();
  parser_.reset();
  namespaces_->Clear();
  knownName_ = nullptr;
  plainAttributes_.clear();
  mergedNamespaces_.clear();
  repetition_.Clear();
  reports_ = 0;
  formerReports_ = 0;
  if (references_)
    references_->Clear();
  ignoreErrors_ = false;
  inCdata_ = false;
  discardUnknown_ = KestanOptionsContext::kestanOptions.kmlErrorHandling.Get() == 3;
}

void ExpatHandler::BeginParse() {
  Reset();
  ForgetFailure();
  const IErrorHandler* const handler = GetErrorHandler();
  // An update is part of a document that was read already, and its values aren't set yet.
  const bool looksForFindings = !editTarget_ && handler && handler->WantsFindings();
  references_.reset(looksForFindings ? new ReferenceCheck : nullptr);
  threadContext_->fatalText.clear();
  formerExcessSteps_ = LoadObserver::GetExcessSteps(*threadContext_);
}

void ExpatHandler::EndParse() {}

void ExpatHandler::HandleAttributes(SchemaObject& object, const unsigned short** attrs,
                                    int skipIndex) {
  AttributeList unknown;
  for (int i = 0; attrs[2 * i]; ++i) {
    if (i == skipIndex)
      continue;
    Assign(attributeName_, attrs[2 * i]);
    Assign(attributeValue_, attrs[2 * i + 1]);
    Namespace ns = Namespace::kUnknown;
    const Field* const field =
        FindField(object.GetSchema(), attributeName_, object.GetNamespace(), &ns, nullptr);
    if (field && field->GetType() == Field::kAttribute) {
      tagStack_.back().SetGiven(*field);
      const QString value = field->KeepsText() ? Share(attributeValue_) : attributeValue_;
      const FromStringResult result =
          field->fromString(object, nullptr, nullptr, value, -1, editTarget_);
      if (!HandleParseResult(result, attributeValue_))
        return;
      if (WantsFindings() && result == FromStringResult::kOk)
        CheckValue(object, *field, nullptr, attributeValue_, -1);
      continue;
    }
    if (IsOwnAttribute(attrs, i))
      continue;
    if (!attributeName_.contains(QLatin1Char(':'))) {
      const bool goOn = HandleRecoverable(ReportCode::kUnknownAttribute, [this] {
        return tr("Unknown attribute %1=\"%2\"",
                  "Message shown when a KML file contains an unknown attribute in an element. "
                  "VAL_1 is the name of the attribute, VAL_2 the value the attribute was set to.")
            .arg(attributeName_, EscapeAttributeValue(attributeValue_));
      });
      if (!goOn)
        return;
    }
    if (KeepsUnknown())
      unknown.emplace_back(attributeName_, attributeValue_);
  }
  if (unknown.empty())
    return;
  const NamespaceList& namespaces = GetNamespacesFor(object, false, unknown);
  object.SetUnknownAttrs(unknown, &namespaces);
}

QString ExpatHandler::Share(const QString& text) {
  constexpr int kLongName = 32;
  if (text.size() > kLongName)
    return QString(text.constData(), text.size());
  std::size_t hash = 0;
  for (const QChar c : text)
    hash = hash * 31 + c.unicode();
  QString& recent = recentValues_[hash % recentValues_.size()];
  if (recent.isNull() || recent != text)
    recent = QString(text.constData(), text.size());
  return recent;
}

bool ExpatHandler::IsOwnAttribute(const unsigned short**, int) const { return false; }

const NamespaceList& ExpatHandler::GetNamespacesFor(const SchemaObject& object, bool ownElement,
                                                    AttributeList& attributes) {
  const UnknownData* const present = object.GetUnknownData();
  mergedNamespaces_ = present ? present->namespaces : NamespaceList();
  const int objectDepth = ownElement ? depth_ - 1 : depth_;
  const NamespaceScope::Place place{objectDepth, parser_->GetByteCount()};
  namespaces_->Carry(place, mergedNamespaces_, &attributes);
  for (const auto& [name, value] : attributes) {
    namespaces_->CarryMentioned(place, name, mergedNamespaces_);
    namespaces_->CarryMentioned(place, value, mergedNamespaces_);
  }
  return mergedNamespaces_;
}

void ExpatHandler::CarryDeclarations(SchemaObject& object, int objectDepth,
                                     AttributeList* attributes) {
  namespaces_->Carry({objectDepth, parser_->GetByteCount()}, object.unknownData().namespaces,
                     attributes);
}

void ExpatHandler::CarryMentioned(SchemaObject& object, int objectDepth, QStringView text) {
  namespaces_->CarryMentioned({objectDepth, parser_->GetByteCount()}, text,
                              object.unknownData().namespaces);
}

const unsigned short** ExpatHandler::PushNamespaces(const unsigned short** attrs) {
  if (!attrs)
    return nullptr;
  plainAttributes_.clear();
  for (; *attrs; attrs += 2) {
    int prefixStart = 0;
    if (!IsDeclaration(attrs[0], &prefixStart)) {
      plainAttributes_.push_back(attrs[0]);
      plainAttributes_.push_back(attrs[1]);
      continue;
    }
    const QString prefix = ToString(attrs[0] + prefixStart);
    const QString uri = ToString(attrs[1]);
    namespaces_->Declare(depth_, prefix, uri, NamespaceStringToEnum(uri), url_);
  }
  if (plainAttributes_.empty())
    return nullptr;
  plainAttributes_.push_back(nullptr);
  return plainAttributes_.data();
}

void ExpatHandler::PopNamespaces() { namespaces_->Pop(depth_); }

Namespace ExpatHandler::LookupNamespace(const QString& prefix) const {
  return namespaces_->Lookup(prefix.constData(), static_cast<int>(prefix.size()));
}

Namespace ExpatHandler::GetDefaultNamespace() const { return namespaces_->GetDefault(); }

void ExpatHandler::SetDefaultNamespace(Namespace ns) { namespaces_->SetInitialDefault(ns); }

Namespace ExpatHandler::NamespaceStringToEnum(const QString& uri) {
  int major = kUnspecifiedVersion;
  const Namespace ns = kestan::NamespaceStringToEnum(uri, &major, nullptr);
  if ((ns == Namespace::kKml || ns == Namespace::kExt) && major > kKmlVersionNumberMajor) {
    FatalError(tr("This client can only process KML files with version less than %1")
                   .arg(kKmlVersionNumberMajor + 1),
               ReportCode::kTooNew);
  }
  if (ns == Namespace::kNone && GetDefaultNamespace() != Namespace::kWms)
    return Namespace::kKml;
  return ns;
}

const QString& ExpatHandler::StripNamespacePrefix(const QString& name, Namespace* ns) {
  const int colon = static_cast<int>(name.indexOf(QLatin1Char(':')));
  if (colon < 0) {
    *ns = GetDefaultNamespace();
    return name;
  }
  *ns = namespaces_->Lookup(name.constData(), colon);
  Assign(localName_, name.constData() + colon + 1, static_cast<int>(name.size()) - colon - 1);
  return localName_;
}

const Field* ExpatHandler::FindField(const Schema& schema, const QString& name, Namespace ns,
                                     Namespace* nsOut, const Schema** schemaOut) {
  const bool prefixed = name.contains(QLatin1Char(':'));
  // Only the fields of a class that a document has made can have a colon in their name.
  if (!prefixed || schema.IsCustom()) {
    if (const Field* const field = schema.FindField(name, ns, schemaOut)) {
      *nsOut = ns;
      return field;
    }
    if (!prefixed && ns == GetDefaultNamespace()) {
      *nsOut = ns;
      return nullptr;
    }
  }
  const QString& localName = StripNamespacePrefix(name, nsOut);
  return schema.FindField(localName, *nsOut, schemaOut);
}

const Schema* ExpatHandler::FindSchema(const QString& name) {
  Namespace ns = Namespace::kUnknown;
  const QString& localName = StripNamespacePrefix(name, &ns);
  return ns == Namespace::kUnknown ? nullptr : Schema::FindNamedSchema(localName, ns);
}

QString ExpatHandler::GetForeignUri(const QString& name) const {
  const int colon = std::max(static_cast<int>(name.indexOf(QLatin1Char(':'))), 0);
  if (namespaces_->Lookup(name.constData(), colon) != Namespace::kUnknown)
    return QString();
  return namespaces_->GetUri(name.constData(), colon);
}

int ExpatHandler::GetId(const unsigned short** attrs) const {
  return GetAttrIndex(attrs, s_resources_->id);
}

int ExpatHandler::GetTargetId(const unsigned short** attrs) const {
  return GetAttrIndex(attrs, s_resources_->targetId);
}

int ExpatHandler::GetTargetIndex(const unsigned short** attrs) const {
  return GetAttrIndex(attrs, s_resources_->targetIndex);
}

int ExpatHandler::GetTargetIdIndex(const unsigned short** attrs) const {
  return GetAttrIndex(attrs, s_resources_->targetIdIndex);
}

int ExpatHandler::GetAttrIndex(const unsigned short** attrs, const XmlCharString& name) const {
  if (!attrs)
    return -1;
  for (int i = 0; attrs[2 * i]; ++i) {
    const unsigned short* const attribute = attrs[2 * i];
    if (name == attribute)
      return i;
    const unsigned short* const colon = FindColon(attribute);
    if (!colon || !(name == colon + 1))
      continue;
    const Namespace ns = namespaces_->Lookup(reinterpret_cast<const QChar*>(attribute),
                                             static_cast<int>(colon - attribute));
    return colon == attribute || ns == Namespace::kKml ? i : -1;
  }
  return -1;
}

QString ExpatHandler::ToString(const unsigned short* characters) {
  return QString(reinterpret_cast<const QChar*>(characters), Length(characters));
}

void ExpatHandler::Assign(QString& text, const unsigned short* characters) {
  Assign(text, reinterpret_cast<const QChar*>(characters), Length(characters));
}

void ExpatHandler::Assign(QString& text, const QChar* characters, int length) {
  if (!text.isDetached()) {
    text = QString(characters, length);
    text.reserve(kValueReserve);
    return;
  }
  text.resize(length);
  std::memcpy(text.data(), characters, static_cast<std::size_t>(length) * sizeof(QChar));
}

} // namespace vorrel::kestan
