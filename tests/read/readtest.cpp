#include "tests/read/readtest.h"

#include "kestan/core/kestanoptions.h"

namespace vorrel::kestan {

QString ReadTest::InPlacemark(const QString& content, const QString& rootAttributes,
                              const QString& attributes) {
  return QStringLiteral("<kml xmlns=\"http://www.opengis.net/kml/2.2\" %1><Placemark %2>%3"
                        "</Placemark></kml>")
      .arg(rootAttributes, attributes, content);
}

QString ReadTest::Keep(const QString& content, const QString& rootAttributes,
                       const QString& attributes) {
  const QString written = RoundTrip(InPlacemark(content, rootAttributes, attributes));
  const QString placemark = Element(written, QStringLiteral("Placemark"));
  const auto start = placemark.indexOf(QLatin1Char('>')) + 1;
  return placemark.mid(start, placemark.lastIndexOf(QLatin1Char('<')) - start).trimmed();
}

void RecordingErrorHandler::OnParseError(ErrorReport& report) {
  reports.push_back(report);
  report.action = action;
  report.sticky = sticky;
}

Parse::Parse(const QByteArray& text, int handling, IErrorHandler* errorHandler)
    : handler(QStringLiteral("http://example.com/a.kml"), 2, nullptr, nullptr, errorHandler) {
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(handling);
  object = Load(handler, text);
}

Parse::~Parse() { KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1); }

} // namespace vorrel::kestan
