#include "tools/kestan/document.h"

#include "kestan/core/field.h"
#include "kestan/feature/kml.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/read/kmlhandler.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/filename.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <cstdio>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace tool {

namespace {

constexpr unsigned kAccess = 2; // what objects have by themselves

bool IsStandardInput(const QString& file) { return file == QLatin1String("-"); }

/// The file that an operand names.
QString GetLocalFile(const QString& name) {
  const QUrl url(name);
  return url.isLocalFile() && !QFileInfo::exists(name) ? url.toLocalFile() : name;
}

/// True for what can only be read from its beginning to its end, such as a pipe, and for a file of
/// which only the tool knows the name.
bool IsStream(const QString& file) {
  const QFileInfo info(file);
  return IsStandardInput(file) || !IsText(file) ||
         (info.exists() && !info.isFile() && !info.isDir());
}

bool Open(QFile& input) {
  const QString& name = input.fileName();
  if (IsStandardInput(name)) {
    return input.open(stdin, QIODevice::ReadOnly);
  }
  if (IsText(name)) {
    return input.open(QIODevice::ReadOnly);
  }
  std::FILE* const file = std::fopen(EncodeName(name).constData(), "rb");
  return file && input.open(file, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

/// Where a document comes from that is read from its beginning to its end: references in one
/// without a file are taken from the present folder.
QString GetStreamUrl(const QString& file) {
  return IsText(file) ? QDir::current().absoluteFilePath(QStringLiteral("-"))
                      : QFileInfo(file).absoluteFilePath();
}

/// The whole content. False, and the reason in `input`, when it can't be read.
bool ReadAll(QFile& input, std::vector<char>& bytes) {
  if (!Open(input)) {
    return false;
  }
  constexpr std::size_t kPieceSize = std::size_t(1) << 20;
  for (;;) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kPieceSize);
    const qint64 count = input.read(bytes.data() + size, kPieceSize);
    bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count <= 0) {
      return count == 0 || input.error() == QFileDevice::NoError;
    }
  }
}

/// What to do about a document of which the root isn't known.
QString GetNamespaceHint(const QString& uri) {
  QString hint = QStringLiteral(": it's in the namespace \"%1\", which isn't known").arg(uri);
  static const QRegularExpression versioned(QStringLiteral("^(.*?)[1-9][0-9.]*[^0-9]*$"));
  const QRegularExpressionMatch match = versioned.match(uri);
  if (match.hasMatch() && !match.captured(1).isEmpty()) {
    hint += QStringLiteral("; --namespace kml=%1 reads it as KML").arg(match.captured(1));
  }
  return hint;
}

/// The words of the system for a file that can't be read, if it has any.
QString GetFileError(const QString& file) {
  QFile input(file);
  const bool isOpen = !IsStandardInput(file) && input.open(QIODevice::ReadOnly);
  return isOpen || input.errorString().isEmpty() ? QString()
                                                 : QStringLiteral(": ") + input.errorString();
}

ParseReport GetError(const KmlHandler& handler, const QString& file) {
  ParseReport error;
  error.code = handler.GetErrorCode();
  error.line = handler.GetErrorLine();
  error.column = handler.GetErrorColumn();
  error.text = handler.GetBareErrorText();
  if (error.text.isEmpty()) {
    // A root with neither a feature nor a theme is no failure of the reader.
    error.code = ReportCode::kBadRoot;
    error.text = QStringLiteral("the document holds no feature");
  } else if (error.code == ReportCode::kForeignRoot) {
    error.text += GetNamespaceHint(handler.GetForeignNamespace());
  } else if (error.code == ReportCode::kUnreadable) {
    error.text += GetFileError(file);
  }
  return error;
}

} // namespace

Document ReadDocument(const QString& name, const QString& url, IErrorHandler* errorHandler) {
  const Progress progress("Reading " + name.toStdString());
  Document document;
  document.file = name;
  const QString file = GetLocalFile(name);
  std::vector<char> bytes;
  const bool isStream = IsStream(file);
  if (isStream || !url.isEmpty()) {
    QFile input(file);
    if (!ReadAll(input, bytes)) {
      document.error.code = ReportCode::kUnreadable;
      document.error.text = input.errorString();
      return document;
    }
    bytes.push_back(0); // so that there's an address also where nothing was read
  }
  KmlHandler handler(!url.isEmpty() ? url
                     : isStream     ? GetStreamUrl(file)
                                    : file,
                     kAccess, nullptr, nullptr, errorHandler);
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  document.root = bytes.empty() ? ExpatHandler::LoadXml(handler, nullptr, 0)
                                : ExpatHandler::LoadXml(handler, data, bytes.size() - 1);
  document.whole = RefPtr<SchemaObject>(handler.GetRoot());
  if (!document.root && document.whole && document.whole->isOfType(Kml::GetClassSchema())) {
    // What a server says to a link may be all that it says.
    document.root = RefPtr<SchemaObject>(static_cast<Kml&>(*document.whole).GetControl());
  }
  if (!document.root) {
    document.error = GetError(handler, file);
  }
  return document;
}

int WriteDocument(const SchemaObject& root, const QString& file, unsigned flags) {
  const QString output = file == QLatin1String("-") ? QString() : file;
  if (!IsText(output)) {
    Complain(QStringLiteral("\"%1\" is no name in UTF-8").arg(Printable(output)));
    return kNoOutput;
  }
  if (QFileInfo(output).isDir()) {
    Complain(QStringLiteral("\"%1\" is a folder").arg(Printable(output)));
    return kNoOutput;
  }
  QByteArray bytes;
  QString error;
  QStringList unreadable;
  QStringList outside;
  {
    const Progress progress("Writing");
    error = output.isEmpty() ? root.WriteKmlString(bytes, flags)
                             : root.WriteKmlFile(output, flags, &unreadable, &outside);
  }
  if (!error.isEmpty()) {
    Complain(output.isEmpty() ? error : QStringLiteral("\"%1\": %2").arg(output, error));
    return kNoOutput;
  }
  for (const QString& name : unreadable)
    Complain(QStringLiteral("\"%1\": can't read \"%2\"; it isn't packed").arg(output, name));
  for (const QString& name : outside)
    Complain(QStringLiteral("\"%1\": \"%2\" lies outside of the document's folder; only --outside "
                            "packs it")
                 .arg(Printable(output), Printable(name)));
  if (output.isEmpty() && !Print(bytes))
    return kNoOutput;
  return unreadable.isEmpty() && outside.isEmpty() ? kFine : kFindings;
}

QString GetName(const SchemaObject& object) {
  const Field* field = object.FindField(QStringLiteral("name"), Namespace::kKml, nullptr);
  return field && field->GetType() == Field::kElement ? field->toString(object, -1) : QString();
}

QString GetTitle(const SchemaObject& object) {
  QString title = object.getType();
  if (!object.GetId().isEmpty()) {
    title += QStringLiteral(" #") + Printable(object.GetId());
  }
  const QString name = Printable(GetName(object));
  return name.isEmpty() ? title : title + QStringLiteral(" \"") + name + QLatin1Char('"');
}

QString FormatPlace(const QString& file, qint64 line, qint64 column) {
  return line > 0 ? QStringLiteral("%1:%2:%3").arg(file).arg(line).arg(column) : file;
}

const NetworkLinkControl* Document::GetControl() const {
  const SchemaObject* control = whole.get();
  if (control && control->isOfType(Kml::GetClassSchema())) {
    control = static_cast<const Kml&>(*control).GetControl();
  }
  return control && control->isOfType(NetworkLinkControl::GetClassSchema())
             ? static_cast<const NetworkLinkControl*>(control)
             : nullptr;
}

QString Document::GetErrorLine() const {
  return FormatPlace(file, error.line, error.column) + QStringLiteral(": ") +
         error.text.simplified();
}

} // namespace tool
