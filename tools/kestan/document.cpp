#include "tools/kestan/document.h"

#include "kestan/read/kmlhandler.h"
#include "tools/kestan/progress.h"

using namespace vorrel;
using namespace vorrel::kestan;

namespace tool {

namespace {

constexpr unsigned kAccess = 2; // what objects have by themselves

} // namespace

Document ReadDocument(const QString& file, IErrorHandler* errorHandler) {
  const Progress progress("Reading " + file.toStdString());
  KmlHandler handler(file, kAccess, nullptr, nullptr, errorHandler);
  Document document;
  document.root = ExpatHandler::LoadXml(handler, nullptr, 0);
  if (!document.root) {
    // A root with neither a feature nor a theme is no failure of the reader.
    document.error = FormatError(file, handler.GetErrorLine(), handler.GetErrorColumn(),
                                 handler.GetErrorText().isEmpty()
                                     ? QStringLiteral("the document holds no feature")
                                     : handler.GetBareErrorText());
  }
  return document;
}

QString FormatError(const QString& file, qint64 line, qint64 column, const QString& message) {
  const QString place = line > 0 ? QStringLiteral(":%1:%2").arg(line).arg(column) : QString();
  return file + place + QStringLiteral(": ") + message.simplified();
}

} // namespace tool
