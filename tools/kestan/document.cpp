#include "tools/kestan/document.h"

#include "kestan/core/field.h"
#include "kestan/read/kmlhandler.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"

#include <QFile>

using namespace vorrel;
using namespace vorrel::kestan;

namespace tool {

namespace {

constexpr unsigned kAccess = 2; // what objects have by themselves

/// Reads from the file, or from the bytes that are given.
Document Read(const QString& file, KmlHandler& handler, const uchar* data, qint64 size) {
  Document document;
  document.root = ExpatHandler::LoadXml(handler, data, static_cast<std::size_t>(size));
  if (!document.root) {
    // A root with neither a feature nor a theme is no failure of the reader.
    document.error = FormatError(file, handler.GetErrorLine(), handler.GetErrorColumn(),
                                 handler.GetErrorText().isEmpty()
                                     ? QStringLiteral("the document holds no feature")
                                     : handler.GetBareErrorText());
  }
  return document;
}

} // namespace

Document ReadDocument(const QString& file, IErrorHandler* errorHandler) {
  const Progress progress("Reading " + file.toStdString());
  KmlHandler handler(file, kAccess, nullptr, nullptr, errorHandler);
  return Read(file, handler, nullptr, 0);
}

Document ReadDocumentAs(const QString& file, const QString& url) {
  const Progress progress("Reading " + file.toStdString());
  QFile input(file);
  if (!input.open(QIODevice::ReadOnly)) {
    return {nullptr, FormatError(file, 0, 0, input.errorString())};
  }
  static const uchar nothing = 0;
  const uchar* data = input.size() > 0 ? input.map(0, input.size()) : &nothing;
  if (!data) {
    return {nullptr, FormatError(file, 0, 0, input.errorString())};
  }
  KmlHandler handler(url, kAccess, nullptr, nullptr, nullptr);
  return Read(file, handler, data, input.size());
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

QString FormatError(const QString& file, qint64 line, qint64 column, const QString& message) {
  const QString place = line > 0 ? QStringLiteral(":%1:%2").arg(line).arg(column) : QString();
  return file + place + QStringLiteral(": ") + message.simplified();
}

} // namespace tool
