#include "fuzz/support.h"

#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/read/kmlhandler.h"

#include <cstdio>
#include <cstdlib>

using namespace vorrel;
using namespace vorrel::kestan;

namespace fuzz {

namespace {

/// Lets the parse go on, and has each message made.
class Listener final : public IErrorHandler {
public:
  void OnParseError(ErrorReport& report) override {
    if (report.message.isEmpty() || report.text.isEmpty()) {
      Fail(QStringLiteral("an error without a message"));
    }
  }
};

} // namespace

void Start() {
  static const bool started = [] {
    GInitialize();
    KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
    return true;
  }();
  static_cast<void>(started);
}

namespace {

Tree Read(const QString& url, const std::uint8_t* data, std::size_t size) {
  const RefPtr<Listener> listener(new Listener);
  KmlHandler handler(url, 2, nullptr, nullptr, listener.get());
  static const std::uint8_t none = 0; // null data would name a file
  Tree tree = ExpatHandler::LoadXml(handler, data ? data : &none, size);
  if (!tree && !handler.GetRoot() && handler.GetErrorText().isEmpty()) {
    Fail(QStringLiteral("refused without a reason"));
  }
  return tree;
}

} // namespace

Tree Read(const std::uint8_t* data, std::size_t size) {
  return Read(QStringLiteral("http://example.com/fuzz.kml"), data, size);
}

Tree Read(const QByteArray& text, const QString& url) {
  return Read(url, reinterpret_cast<const std::uint8_t*>(text.constData()),
              static_cast<std::size_t>(text.size()));
}

QByteArray Write(const Tree& tree) {
  QByteArray bytes;
  const QString error = tree->WriteKmlString(bytes);
  if (!error.isEmpty()) {
    Fail(error);
  }
  return bytes;
}

void CheckOutput(const Tree& tree) {
  const Tree second = Read(Write(tree));
  if (!second) {
    Fail(QStringLiteral("the reader refuses what was written"));
  }
  const QByteArray written = Write(second);
  const Tree third = Read(written);
  if (!third || Write(third) != written) {
    Fail(QStringLiteral("no fixed point:\n") + QString::fromUtf8(written));
  }
}

QStringList Lines(const std::uint8_t* data, std::size_t size) {
  QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
  text.remove(QChar()); // no document can hold it
  return text.split(QLatin1Char('\n'));
}

void Fail(const QString& message) {
  std::fprintf(stderr, "%s\n", message.toUtf8().constData());
  std::abort();
}

} // namespace fuzz
