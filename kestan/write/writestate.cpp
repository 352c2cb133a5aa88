#include "kestan/write/writestate.h"

#include "kestan/core/schemaobject.h"
#include "kestan/host/file.h"
#include "kestan/host/kmzwriter.h"
#include "kestan/host/path.h"
#include "kestan/host/tr.h"
#include "kestan/read/namespaces.h" // the URIs of the standard prefixes

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vorrel::kestan {

namespace {

QString OpenFault() {
  return tr("Could not open file for writing.", "Unable to open a KML or KMZ file path");
}

QString WriteFault() {
  return tr("Could not write file.", "Unable to write the contents of a KML or KMZ file");
}

QString RemoveFault() { return tr("Could not remove file.", "Unable to delete a KML or KMZ file"); }

QString RenameFault() { return tr("Could not rename file.", "Unable to rename a KML or KMZ file"); }

/// True for a pipe, a terminal, a device: what can't be replaced by another file, and what opening
/// may already change.
bool IsSpecialFile(const QString& path) {
  const QFileInfo info(path);
  // The names of open files, such as "/dev/stdout", lead to the place of the file that is meant.
  return (info.exists() && !info.isFile() && !info.isDir()) ||
         path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/"));
}

bool WriteAll(QFileDevice& file, const Utf8OStream& text) {
  const qint64 size = static_cast<qint64>(text.size());
  return file.write(text.data(), size) == size && file.flush();
}

} // namespace

WriteState::WriteState(const QString& fileName, const QString& hint, bool keepRelativeUrls)
    : keepRelativeUrls_(keepRelativeUrls), fileName_(fileName), hint_(hint) {
  if (fileName.isEmpty()) {
    error_ = tr("Empty filename for writing kml");
    return;
  }
  const QString suffix = QFileInfo(fileName).suffix().toLower();
  if (suffix == QLatin1String("kmz")) {
    mode_ = kWriteKmzFile;
    kmzFiles_.SetDestination(fileName_);
  }
  if (suffix.isEmpty() && !IsSpecialFile(fileName))
    fileName_ += QLatin1String(".kml");
  error_ = GetDestinationFault();
  if (!error_.isEmpty())
    return;

  baseDir_ = fileName_;
  file::CleanupPathname(baseDir_);
  baseDir_ = QFileInfo(baseDir_.toLower()).absolutePath();
  if (!baseDir_.endsWith(QLatin1Char('/')))
    baseDir_ += QLatin1Char('/');
  WritePreamble();
}

WriteState::WriteState(QByteArray& bytes, const QString& hint)
    : mode_(kWriteByteArray), hint_(hint), bytes_(&bytes) {
  WritePreamble();
}

WriteState::~WriteState() { Finish(); }

QString WriteState::GetDestinationFault() {
  // An archive isn't written from its start to its end.
  if (IsSpecialFile(fileName_))
    return mode_ == kWriteKmzFile ? OpenFault() : QString(); // the rest is told when it's written
  const bool existed = QFileInfo::exists(fileName_);
  QFile file(fileName_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
    return OpenFault();
  createdFile_ = !existed;
  return QString();
}

QString WriteState::WriteFile(const SchemaObject& object, const QString& path, const QString& hint,
                              bool hoist, bool keepRelativeUrls, QStringList* unreadableFiles) {
  WriteState state(path, hint, keepRelativeUrls);
  state.SetRootUrl(object.GetBaseUrl());
  if (state.error_.isEmpty()) {
    if (hoist)
      object.WriteStylesAndSchemas(state, path);
    else
      object.WriteKml(state);
    state.Finish();
  }
  if (unreadableFiles)
    *unreadableFiles = state.GetUnreadableFiles();
  return state.error_;
}

QString WriteState::WriteString(const SchemaObject& object, QByteArray& bytes, const QString& hint,
                                bool hoist) {
  WriteState state(bytes, hint);
  state.SetRootUrl(object.GetBaseUrl());
  if (hoist)
    object.WriteStylesAndSchemas(state, QStringLiteral("KmlFile"));
  else
    object.WriteKml(state);
  state.Finish();
  return state.error_;
}

void WriteState::Finish() {
  if (finished_)
    return;
  finished_ = true;
  if (error_.isEmpty()) {
    // The namespaces are known only now.
    if (!namespaces_.GetUnknown().empty()) {
      const QByteArray preamble = GetPreamble();
      stream_.Replace(0, preambleSize_, preamble.constData(),
                      static_cast<std::size_t>(preamble.size()));
    }
    WritePostamble();
    error_ = mode_ == kWriteByteArray ? FinishBytes()
             : mode_ == kWriteKmzFile ? FinishArchive()
                                      : FinishFile();
  }
  if (!error_.isEmpty() && createdFile_)
    QFile::remove(fileName_);
}

QString WriteState::FinishBytes() {
  if (stream_.size() > Utf8OStream::kMaxArraySize)
    return tr("The document is too large for a byte array.", "A KML text is beyond 2 GiB");
  *bytes_ = stream_.TakeBytes();
  return QString();
}

QString WriteState::FinishFile() {
  if (IsSpecialFile(fileName_)) {
    QFile file(fileName_);
    if (!file.open(QIODevice::WriteOnly))
      return OpenFault();
    return WriteAll(file, stream_) ? QString() : WriteFault();
  }
  // The old contents stay until the new ones are complete; only where the folder takes no further
  // file are they overwritten in place.
  QSaveFile file(fileName_);
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly))
    return OpenFault();
  return WriteAll(file, stream_) && file.commit() ? QString() : WriteFault();
}

QString WriteState::FinishArchive() {
  // The archive is complete and on the disk before it takes the place of the old one.
  QSaveFile file(fileName_);
  if (!file.open(QIODevice::WriteOnly))
    return RemoveFault(); // the folder takes no new file, so that the old one can't go
  kmz::Writer archive(file);
  archive.Add(QStringLiteral("doc.kml"), stream_.data(), static_cast<qint64>(stream_.size()));
  if (!resourceDictionary_.IsEmpty()) {
    const QByteArray text = resourceDictionary_.ExportToString().toUtf8();
    archive.Add(QStringLiteral("textures.txt"), text.constData(), text.size());
  }
  const QString error = kmzFiles_.Pack(archive);
  if (!error.isEmpty())
    return error;
  if (!archive.Close() || !file::sync(file))
    return WriteFault();
  return file.commit() ? QString() : RenameFault();
}

void WriteState::WritePreamble() {
  const QByteArray preamble = GetPreamble();
  preambleSize_ = static_cast<std::size_t>(preamble.size());
  stream_.WriteRawBytes(preamble.constData(), preambleSize_);
}

QByteArray WriteState::GetPreamble() const {
  Utf8OStream preamble;
  preamble << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml " << GetStandardNamespacesString();
  preamble.SetInAttribute(true);
  for (const RefPtr<UnknownNamespace>& declaration : namespaces_.GetUnknown()) {
    preamble << " xmlns:" << declaration->prefix << "=\"";
    XmlUtf8OStream(preamble) << declaration->uri;
    preamble << "\"";
  }
  if (!hint_.isEmpty()) {
    preamble << " hint=\"";
    XmlUtf8OStream(preamble) << hint_;
    preamble << "\"";
  }
  preamble << ">\n";
  return preamble.TakeBytes();
}

void WriteState::WritePostamble() { stream_ << "</kml>\n"; }

void WriteState::WriteUnknownAttrs(const QString& text, const NamespaceList& namespaces) {
  if (text.isEmpty())
    return;
  rawXml_.SetScope(namespaces);
  rawXml_.WriteAttributes(text);
}

void WriteState::WriteUnknownElements(const QString& text, const NamespaceList& namespaces) {
  rawXml_.SetScope(namespaces);
  rawXml_.WriteElements(text);
}

} // namespace vorrel::kestan
