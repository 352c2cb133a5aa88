#include "kestan/write/writestate.h"

#include "kestan/core/schemaobject.h"
#include "kestan/host/file.h"
#include "kestan/host/tr.h"
#include "kestan/read/namespaces.h" // the URIs of the standard prefixes

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <limits>

namespace vorrel::kestan {

namespace {

QString OpenFault() {
  return tr("Could not open file for writing.", "Unable to open a KML or KMZ file path");
}

QString WriteFault() {
  return tr("Could not write file.", "Unable to write the contents of a KML or KMZ file");
}

/// True for a pipe, a terminal, a device: what can't be replaced by another file, and what opening
/// may already change.
bool IsSpecialFile(const QString& path) {
  const QFileInfo info(path);
  // The names of open files, such as "/dev/stdout", lead to the place of the file that is meant.
  return (info.exists() && !info.isFile() && !info.isDir()) ||
         path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/"));
}

bool WriteAll(QIODevice& device, const char* bytes, std::size_t size) {
  const qint64 count = static_cast<qint64>(size);
  return device.write(bytes, count) == count;
}

bool WriteDocument(QFileDevice& file, const QByteArray& preamble, const Utf8OStream& body) {
  return WriteAll(file, preamble.constData(), static_cast<std::size_t>(preamble.size())) &&
         WriteAll(file, body.data(), body.size()) && file.flush();
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
    error_ = tr("Writing KMZ archives isn't supported yet.", "Unable to write a KMZ file");
    return;
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
}

WriteState::WriteState(QByteArray& bytes, const QString& hint)
    : mode_(kWriteByteArray), hint_(hint), bytes_(&bytes) {}

WriteState::~WriteState() { Finish(); }

QString WriteState::GetDestinationFault() {
  if (IsSpecialFile(fileName_))
    return QString(); // told when it's written
  const bool existed = QFileInfo::exists(fileName_);
  QFile file(fileName_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
    return OpenFault();
  createdFile_ = !existed;
  return QString();
}

QString WriteState::WriteFile(const SchemaObject& object, const QString& path, const QString& hint,
                              bool hoist, bool keepRelativeUrls) {
  WriteState state(path, hint, keepRelativeUrls);
  if (state.error_.isEmpty()) {
    if (hoist)
      object.WriteStylesAndSchemas(state, path);
    else
      object.WriteKml(state);
    state.Finish();
  }
  return state.error_;
}

QString WriteState::WriteString(const SchemaObject& object, QByteArray& bytes, const QString& hint,
                                bool hoist) {
  WriteState state(bytes, hint);
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
    const QByteArray preamble = GetPreamble();
    WritePostamble();
    error_ = bytes_ ? FinishBytes(preamble) : FinishFile(preamble);
  }
  if (!error_.isEmpty() && createdFile_)
    QFile::remove(fileName_);
}

QString WriteState::FinishBytes(const QByteArray& preamble) {
  const std::size_t size = static_cast<std::size_t>(preamble.size()) + stream_.size();
  // Some space is taken by the array's own head.
  constexpr std::size_t kLimit = std::numeric_limits<int>::max() - 64;
  if (size > kLimit)
    return tr("The document is too large for a byte array.", "A KML text is beyond 2 GiB");
  bytes_->clear();
  bytes_->reserve(static_cast<int>(size));
  bytes_->append(preamble);
  bytes_->append(stream_.data(), static_cast<int>(stream_.size()));
  return QString();
}

QString WriteState::FinishFile(const QByteArray& preamble) {
  if (IsSpecialFile(fileName_)) {
    QFile file(fileName_);
    if (!file.open(QIODevice::WriteOnly))
      return OpenFault();
    return WriteDocument(file, preamble, stream_) ? QString() : WriteFault();
  }
  // The old contents stay until the new ones are complete; only where the folder takes no further
  // file are they overwritten in place.
  QSaveFile file(fileName_);
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly))
    return OpenFault();
  return WriteDocument(file, preamble, stream_) && file.commit() ? QString() : WriteFault();
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
  return QByteArray(preamble.data(), static_cast<int>(preamble.size()));
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
