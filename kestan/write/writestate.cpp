#include "kestan/write/writestate.h"

#include "kestan/core/schemaobject.h"
#include "kestan/host/tr.h"
#include "kestan/link/abstractlink.h" // what a link tells of its target
#include "kestan/read/expathandler.h" // how deep a reader goes
#include "kestan/read/namespaces.h"   // the URIs of the standard prefixes
#include "kestan/write/destination.h"
#include "kestan/write/outputurls.h"
#include "kestan/write/rawxmlwriter.h"
#include "kestan/write/rootnamespaces.h"
#include "kestan/write/stylehoist.h"

#include <cstddef>

namespace vorrel::kestan {

struct WriteState::Parts {
  Parts(Destination place, bool keepRelativeUrls, TagStream& text)
      : destination(std::move(place)), urls(destination, keepRelativeUrls),
        preserved(text.stream(), namespaces) {}

  Destination destination;
  OutputUrls urls;
  StyleHoist hoist{urls};
  RootNamespaces namespaces;
  RawXmlWriter preserved;
  std::size_t preambleSize = 0; ///< Of what the text begins with.
};

WriteState::WriteState(const QString& fileName, const QString& hint, bool keepRelativeUrls)
    : hint_(hint),
      parts_(std::make_unique<Parts>(Destination(fileName, error_), keepRelativeUrls, *this)) {
  WritePreamble();
}

WriteState::WriteState(QByteArray& bytes, const QString& hint)
    : hint_(hint), parts_(std::make_unique<Parts>(Destination(bytes), false, *this)) {
  WritePreamble();
}

WriteState::~WriteState() { Finish(); }

QString WriteState::WriteFile(const SchemaObject& object, const QString& path, const QString& hint,
                              bool hoist, bool keepRelativeUrls) {
  WriteState state(path, hint, keepRelativeUrls);
  return state.Write(object, path, hoist ? 0U : unsigned{kWriteNoHoist});
}

QString WriteState::WriteString(const SchemaObject& object, QByteArray& bytes, const QString& hint,
                                bool hoist) {
  WriteState state(bytes, hint);
  return state.Write(object, QStringLiteral("KmlFile"), hoist ? 0U : unsigned{kWriteNoHoist});
}

const QString& WriteState::Write(const SchemaObject& object, const QString& name, unsigned flags) {
  OutputUrls& urls = parts_->urls;
  urls.SetRootUrl(object.GetBaseUrl());
  if (flags & kWriteRelativeUrls)
    urls.SetKeepRelativeUrls(true);
  if (flags & kWriteOwnFilesOnly)
    urls.PackOwnFilesOnly();
  if (error_.isEmpty()) {
    if (flags & kWriteNoHoist)
      object.WriteKml(*this);
    else
      object.WriteStylesAndSchemas(*this, name);
  }
  Finish();
  return error_;
}

void WriteState::Finish() {
  if (finished_)
    return;
  finished_ = true;
  if (error_.isEmpty()) {
    // The namespaces are known only now.
    if (!parts_->namespaces.GetUnknown().empty()) {
      const QByteArray preamble = GetPreamble();
      stream().Replace(0, parts_->preambleSize, preamble.constData(),
                       static_cast<std::size_t>(preamble.size()));
    }
    WritePostamble();
    error_ = parts_->destination.Write(stream(), parts_->urls);
  }
  if (!error_.isEmpty()) {
    parts_->urls.Discard();
    parts_->destination.Discard();
  }
}

void WriteState::FailTooDeep() {
  static_assert(kMaxDepth == kMaxElementDepth - 2);
  SetError(tr("Too many levels of objects.", "A tree is deeper than what can be read from KML"));
}

void WriteState::WritePreamble() {
  const QByteArray preamble = GetPreamble();
  parts_->preambleSize = static_cast<std::size_t>(preamble.size());
  stream().WriteRawBytes(preamble.constData(), parts_->preambleSize);
}

QByteArray WriteState::GetPreamble() const {
  Utf8OStream preamble;
  preamble << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml ";
  parts_->namespaces.WriteDeclarations(preamble);
  if (!hint_.isEmpty()) {
    preamble << " hint=\"";
    const AttributeScope scope(preamble);
    XmlUtf8OStream(preamble) << hint_;
    preamble << "\"";
  }
  preamble << ">\n";
  return preamble.TakeBytes();
}

void WriteState::WritePostamble() { stream() << "</kml>\n"; }

WriteState::WriteMode WriteState::mode() const { return parts_->destination.mode(); }

const QString& WriteState::fileName() const { return parts_->destination.fileName(); }

void WriteState::WriteUnknownAttrs(const QString& text, const NamespaceList& namespaces,
                                   bool isLeaf) {
  if (text.isEmpty())
    return;
  parts_->preserved.SetScope(namespaces);
  parts_->preserved.WriteAttributes(text, isLeaf);
  if (parts_->namespaces.IsExtensionRebound())
    SetDeclaresExtension();
  CheckRepetition();
}

void WriteState::WriteUnknownElements(const QString& text, const NamespaceList& namespaces) {
  parts_->preserved.SetScope(namespaces);
  parts_->preserved.WriteElements(text);
  CheckRepetition();
}

void WriteState::CheckRepetition() {
  if (parts_->preserved.RepeatsTooMuch())
    SetError(tr("The namespaces of unknown content would take up most of the document.",
                "Long namespaces would have to be repeated on very many elements"));
}

void WriteState::AddUnknownNamespaces(const NamespaceList& namespaces) {
  parts_->namespaces.Add(namespaces);
}

StyleHoist& WriteState::hoist() { return parts_->hoist; }

OutputUrls& WriteState::urls() { return parts_->urls; }

void WriteState::PushStylesAndSchemas() { parts_->hoist.Push(); }

void WriteState::PopStylesAndSchemas() { parts_->hoist.Pop(); }

bool WriteState::HasStylesOrSchemas() const { return parts_->hoist.HasStylesOrSchemas(); }

bool WriteState::AddStyle(const StyleSelector& style) { return parts_->hoist.AddStyle(style); }

bool WriteState::AddSchema(const CustomSchema& schema) { return parts_->hoist.AddSchema(schema); }

QString WriteState::GenerateUniqueId(const QString& id) {
  return parts_->hoist.GenerateUniqueId(id);
}

QString WriteState::GetObjectId(const SchemaObject& object) const {
  return parts_->hoist.GetObjectId(object);
}

void WriteState::WriteObjUrl(SchemaObject* object, const QString& url) {
  parts_->hoist.WriteObjUrl(stream(), object, url);
}

QString WriteState::RegisterUrl(const QString& url, const QString& absoluteUrl, bool embed,
                                const SchemaObject* owner) {
  return parts_->urls.Register(url, absoluteUrl, embed, owner);
}

QString WriteState::RegisterLink(const AbstractLink& link) {
  return RegisterUrl(link.GetHref(), link.GetResourceUrl(), link.GetEmbedInKmz(), &link);
}

const QStringList& WriteState::GetUnreadableFiles() const {
  return parts_->urls.GetUnreadableFiles();
}

const QStringList& WriteState::GetOutsideFiles() const { return parts_->urls.GetOutsideFiles(); }

void WriteState::AddResourceMapEntry(const QString& name, const QString& value,
                                     const QString& object) {
  parts_->urls.AddResourceMapEntry(name, value, object);
}

} // namespace vorrel::kestan
