#include "tests/support/xml.h"

#include <QStringList>

#include <expat.h>
#include <memory>
#include <type_traits>

namespace vorrel::kestan {

namespace {

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

bool Parse(XML_Parser parser, const QByteArray& document) {
  return XML_Parse(parser, document.constData(), static_cast<int>(document.size()), XML_TRUE) ==
         XML_STATUS_OK;
}

void AddStart(void* events, const XML_Char* name, const XML_Char** attributes) {
  QStringList sorted;
  for (; *attributes; attributes += 2) {
    sorted += QStringLiteral("%1=%2").arg(QString::fromUtf8(attributes[0]),
                                          QString::fromUtf8(attributes[1]));
  }
  sorted.sort();
  *static_cast<QString*>(events) +=
      QStringLiteral("\n<%1 %2>").arg(QString::fromUtf8(name), sorted.join(QLatin1Char(' ')));
}

void AddEnd(void* events, const XML_Char* /*name*/) {
  *static_cast<QString*>(events) += QStringLiteral("\n</>");
}

void AddText(void* events, const XML_Char* text, int length) {
  *static_cast<QString*>(events) += QString::fromUtf8(text, length);
}

} // namespace

QString FindXmlError(const QByteArray& document) {
  const ParserPtr parser(XML_ParserCreateNS(nullptr, ' '));
  if (Parse(parser.get(), document)) {
    return QString();
  }
  return QStringLiteral("line %1: %2")
      .arg(XML_GetCurrentLineNumber(parser.get()))
      .arg(QString::fromUtf8(XML_ErrorString(XML_GetErrorCode(parser.get()))));
}

QString Canonical(const QByteArray& document) {
  const ParserPtr parser(XML_ParserCreateNS(nullptr, ' '));
  QString events;
  XML_SetUserData(parser.get(), &events);
  XML_SetElementHandler(parser.get(), AddStart, AddEnd);
  XML_SetCharacterDataHandler(parser.get(), AddText);
  return Parse(parser.get(), document) ? events : QString();
}

} // namespace vorrel::kestan
