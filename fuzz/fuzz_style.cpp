// Bytes to style maps that refer to each other: whatever the graph, each feature has a look, and
// nothing of it outlives its document.

#include "fuzz/support.h"

#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"

#include <algorithm>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

constexpr std::size_t kMaxMaps = 64;

/// Maps come first; then a style, nothing, another document, and built-in styles.
QString Target(unsigned choice, std::size_t maps) {
  const std::size_t target = choice % (maps + 5);
  if (target <= maps) {
    return QStringLiteral("#m%1").arg(target);
  }
  const char* others[] = {"", "#missing", "far.kml#s", "root://styles#hl"};
  return QLatin1String(others[target - maps - 1]);
}

QString Pair(const char* key, const QString& target, bool own) {
  const QString reference = "<styleUrl>" + target + "</styleUrl>";
  return QStringLiteral("<Pair><key>%1</key>%2</Pair>")
      .arg(QLatin1String(key), own ? "<StyleMap><Pair><key>normal</key>" + reference +
                                         "</Pair></StyleMap>"
                                   : reference);
}

QByteArray MakeDocument(const std::uint8_t* data, std::size_t maps) {
  const QString style = QStringLiteral("<Style id='m%1'/>").arg(maps);
  QString text;
  for (std::size_t i = 0; i < maps; ++i) {
    const unsigned normal = data[2 * i];
    const unsigned highlight = data[2 * i + 1];
    const QString url = QStringLiteral("<styleUrl>#m%1</styleUrl>").arg(i);
    text += QStringLiteral("<StyleMap id='m%1'>").arg(i) +
            Pair("normal", Target(normal, maps), normal >= 192) +
            Pair("highlight", Target(highlight, maps), highlight >= 192) + "</StyleMap>" +
            "<Placemark>" + url + "</Placemark>" + "<Placemark>" + url +
            "<Style><LineStyle><width>5</width></LineStyle></Style></Placemark>" +
            (i == maps / 2 ? style : QString());
  }
  return ("<Document>" + text + "</Document>").toUtf8();
}

void Ask(const SchemaObject& document) {
  mmvector<SchemaObject*> features;
  document.FindBySchema(AbstractFeature::GetClassSchema(), features);
  for (const SchemaObject* object : features) {
    const auto* feature = static_cast<const AbstractFeature*>(object);
    if (!feature->getRenderStyle(0) || !feature->getRenderStyle(1)) {
      fuzz::Fail(QStringLiteral("a feature without a style"));
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const std::size_t maps = std::min(size / 2, kMaxMaps);
  if (maps == 0) {
    return 0;
  }
  const QByteArray text = MakeDocument(data, maps);
  fuzz::Tree document = fuzz::Read(reinterpret_cast<const std::uint8_t*>(text.constData()),
                                   static_cast<std::size_t>(text.size()));
  if (!document) {
    fuzz::Fail(QStringLiteral("the document isn't read"));
  }
  Ask(*document);
  if (Style* style = Style::find(document->GetUrl(), QStringLiteral("m%1").arg(maps))) {
    style->GetLineStyle()->SetWidth(3);
    Ask(*document);
  }
  fuzz::Write(document);
  Watcher<StyleMap> first(StyleMap::find(document->GetUrl(), QStringLiteral("m0")));
  document.reset();
  if (first.get()) {
    fuzz::Fail(QStringLiteral("a style map outlives its document"));
  }
  return 0;
}
