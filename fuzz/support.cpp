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

Tree Read(const std::uint8_t* data, std::size_t size) {
  const RefPtr<Listener> listener(new Listener);
  KmlHandler handler(QStringLiteral("http://example.com/fuzz.kml"), 2, nullptr, nullptr,
                     listener.get());
  static const std::uint8_t none = 0; // null data would name a file
  Tree tree = ExpatHandler::LoadXml(handler, data ? data : &none, size);
  if (!tree && !handler.GetRoot() && handler.GetErrorText().isEmpty()) {
    Fail(QStringLiteral("refused without a reason"));
  }
  return tree;
}

QByteArray Write(const Tree& tree) {
  QByteArray bytes;
  const QString error = tree->WriteKmlString(bytes);
  if (!error.isEmpty()) {
    Fail(error);
  }
  return bytes;
}

void Fail(const QString& message) {
  std::fprintf(stderr, "%s\n", message.toUtf8().constData());
  std::abort();
}

} // namespace fuzz
