#include "tools/kestan/document.h"

#include "kestan/read/kmlhandler.h"
#include "tools/kestan/progress.h"

#include <QRegularExpression>

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
  document.error = handler.GetErrorText();
  return document;
}

QString FormatError(const QString& file, const QString& error) {
  // The text starts with the place, which is taken out of it, and has line breaks.
  static const QRegularExpression place(
      QStringLiteral("at line ([0-9]+), column ([0-9]+):(.*)$"),
      QRegularExpression::DotMatchesEverythingOption);
  const QRegularExpressionMatch match = place.match(error);
  if (!match.hasMatch()) {
    return QStringLiteral("%1: %2").arg(file, error.simplified());
  }
  return QStringLiteral("%1:%2:%3: %4")
      .arg(file, match.captured(1), match.captured(2), match.captured(3).simplified());
}

} // namespace tool
