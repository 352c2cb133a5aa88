#include "tests/support/kmltest.h"

#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/read/kmlhandler.h"
#include "tests/support/xml.h"

#include <QFile>
#include <QRegularExpression>

namespace vorrel::kestan {

/// Collects the recoverable errors of a parse.
class KmlTest::Listener final : public IErrorHandler {
public:
  explicit Listener(QStringList& messages) : messages_(messages) {}

  void OnParseError(ErrorReport& report) override { messages_ += report.text; }

private:
  QStringList& messages_;
};

KmlTest::KmlTest() {
  GInitialize();
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
}

KmlTest::~KmlTest() {
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Reset();
  GShutdown();
}

RefPtr<SchemaObject> KmlTest::ReadObject(const QByteArray& text) {
  messages_.clear();
  const RefPtr<Listener> listener(new Listener(messages_));
  KmlHandler handler(GetDocumentUrl(), 2, nullptr, nullptr, listener.get());
  RefPtr<SchemaObject> object = Load(handler, text);
  error_ = handler.GetErrorText();
  return object;
}

RefPtr<SchemaObject> KmlTest::ReadAt(const QString& url, const QString& text) {
  KmlHandler handler(url, 2, nullptr, nullptr, nullptr);
  const RefPtr<SchemaObject> object = Load(handler, text.toUtf8());
  return Cast<SchemaObject>(object.get(), handler.GetErrorText());
}

QString KmlTest::Write(const SchemaObject& object, unsigned flags) const {
  QByteArray bytes;
  const QString failure = object.WriteKmlString(bytes, flags);
  EXPECT_EQ(QString(), failure);
  return QString::fromUtf8(bytes);
}

QString KmlTest::RoundTrip(const QByteArray& text) {
  const RefPtr<SchemaObject> first = ReadObject(text);
  if (!first) {
    ADD_FAILURE() << "refused: " << error().toStdString();
    return QString();
  }
  const QString written = Write(*first);
  EXPECT_EQ(QString(), FindXmlError(written.toUtf8())) << written.toStdString();
  const RefPtr<SchemaObject> second = ReadObject(written);
  if (second)
    EXPECT_EQ(written, Write(*second));
  else
    ADD_FAILURE() << "refused: " << error().toStdString();
  return written;
}

QByteArray KmlTest::ReadData(const QString& name) {
  QFile file(QStringLiteral(KESTAN_TEST_DATA "/") + name);
  if (!file.open(QIODevice::ReadOnly)) {
    ADD_FAILURE() << "no test data " << name.toStdString();
  }
  return file.readAll();
}

RefPtr<SchemaObject> Load(KmlHandler& handler, const QByteArray& text) {
  return ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(text.constData()),
                               static_cast<std::size_t>(text.size()));
}

QString Element(const QString& xml, const QString& name) {
  const QRegularExpression tag(
      QStringLiteral("<(/?)%1(?:\\s[^>]*?)?(/?)>").arg(QRegularExpression::escape(name)));
  decltype(xml.size()) start = -1;
  int depth = 0;
  for (auto matches = tag.globalMatch(xml); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    if (start < 0) {
      start = match.capturedStart();
    }
    if (match.capturedLength(1) > 0) {
      --depth;
    } else if (match.capturedLength(2) == 0) {
      ++depth;
    }
    if (depth == 0) {
      return xml.mid(start, match.capturedEnd() - start);
    }
  }
  return QString();
}

} // namespace vorrel::kestan
