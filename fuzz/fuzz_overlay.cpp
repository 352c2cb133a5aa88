// Texts to overlays: whatever the numbers, what is computed of them is finite or refused, asking
// changes nothing, and all comes back from KML as it was.
//
// Each line of the input is a text; they are taken in turn for all fields of three overlays.

#include "fuzz/support.h"

#include "kestan/feature/folder.h"
#include "kestan/geometry/geometrycounter.h"
#include "kestan/overlay/groundoverlay.h"
#include "kestan/overlay/imagepyramid.h"
#include "kestan/overlay/photooverlay.h"
#include "kestan/overlay/screenoverlay.h"
#include "kestan/overlay/screenoverlayschema.h"
#include "kestan/spacetime/lookat.h"
#include "kestan/spacetime/viewvolume.h"
#include "kestan/style/icon.h"

#include <cmath>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// The texts of the input, again and again.
class Texts {
public:
  explicit Texts(const QStringList& lines) : lines_(lines) {}

  QString Next() {
    return lines_.isEmpty() ? QString() : lines_[turn_++ % lines_.size()].toHtmlEscaped();
  }
  int Number() { return Next().toInt(); }

private:
  QStringList lines_;
  int turn_ = 0;
};

/// `%` stands for the next text.
QByteArray Fill(const char* pattern, Texts& texts) {
  QString text;
  for (const char* c = pattern; *c; ++c) {
    text += *c == '%' ? texts.Next() : QString(QLatin1Char(*c));
  }
  return text.toUtf8();
}

const char kDocument[] =
    "<Folder xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><ScreenOverlay><refreshPeriod>%"
    "</refreshPeriod><Icon><href>%</href><gx:w>%</gx:w><gx:h>%</gx:h></Icon>"
    "<overlayXY x=\"%\" y=\"%\" xunits=\"%\" yunits=\"%\"/>"
    "<screenXY x=\"%\" y=\"%\" xunits=\"insetPixels\" yunits=\"fraction\"/>"
    "<rotationXY x=\"%\" y=\"%\"/><size x=\"%\" y=\"%\" xunits=\"%\" yunits=\"%\"/>"
    "<rotation>%</rotation></ScreenOverlay>"
    "<GroundOverlay><color>%</color><drawOrder>%</drawOrder><altitude>%</altitude>"
    "<altitudeMode>absolute</altitudeMode><LatLonBox><north>%</north><south>%</south>"
    "<east>%</east><west>%</west><rotation>%</rotation></LatLonBox></GroundOverlay>"
    "<GroundOverlay><gx:LatLonQuad><coordinates>%,% %,%,% % %</coordinates></gx:LatLonQuad>"
    "</GroundOverlay>"
    "<PhotoOverlay><Icon><href>$[level]/$[x]%$[y]</href></Icon><rotation>%</rotation>"
    "<ImagePyramid><tileSize>%</tileSize><maxWidth>%</maxWidth><maxHeight>%</maxHeight>"
    "<gridOrigin>%</gridOrigin><existenceMapHref>%</existenceMapHref></ImagePyramid>"
    "<shape>%</shape></PhotoOverlay></Folder>";

template <class... Numbers> void ExpectFinite(const char* what, Numbers... numbers) {
  if (!(std::isfinite(numbers) && ...)) {
    fuzz::Fail(QLatin1String(what));
  }
}

void Ask(ScreenOverlay& overlay, Texts& texts) {
  overlay.SetImageSize({texts.Number(), texts.Number()});
  const int width = texts.Number();
  const int height = texts.Number();
  Vec2<float> verts[ScreenOverlay::kCornerCount];
  const ScreenOverlay::Rect rect = overlay.GetScreenRect(width, height);
  if (overlay.GetScreenVerts(width, height, verts)) {
    for (const Vec2<float>& vert : verts) {
      ExpectFinite("a corner", vert.x, vert.y);
      if (vert.x < rect.minX || vert.x > rect.maxX || vert.y < rect.minY || vert.y > rect.maxY) {
        fuzz::Fail(QStringLiteral("a corner outside"));
      }
    }
  }
}

void Ask(GroundOverlay& overlay, Texts& texts) {
  const RefPtr<LookAt> view(new LookAt(KmlId(), QString()));
  overlay.GetContainingView(texts.Next().toFloat(), texts.Next().toFloat(), *view);
  ExpectFinite("a view", view->GetLongitude(), view->GetLatitude(), view->GetRange());
}

void Ask(PhotoOverlay& overlay) {
  const RefPtr<Icon> icon = overlay.CreateThumbnail();
  if (!icon || icon->GetW() < -1 || icon->GetH() < -1) {
    fuzz::Fail(QStringLiteral("a thumbnail"));
  }
  if (const ImagePyramid* const pyramid = overlay.GetImagePyramid()) {
    const bool isSize = pyramid->GetTileSize() >= 0;
    if (isSize && (pyramid->GetMaxWidthInPixels() < 0 || pyramid->GetMaxHeightInPixels() < 0)) {
      fuzz::Fail(QStringLiteral("a negative size"));
    }
  }
  if (!overlay.viewVolume() || !overlay.IsCompatible(overlay)) {
    fuzz::Fail(QStringLiteral("a photo isn't like itself"));
  }
}

void AskAll(Folder& folder, Texts& texts) {
  for (int i = 0; i < folder.GetChildCount(); ++i) {
    AbstractFeature& feature = *folder.GetChild(i);
    if (feature.isOfType(ScreenOverlay::GetClassSchema())) {
      Ask(static_cast<ScreenOverlay&>(feature), texts);
    } else if (feature.isOfType(GroundOverlay::GetClassSchema())) {
      Ask(static_cast<GroundOverlay&>(feature), texts);
    } else if (feature.isOfType(PhotoOverlay::GetClassSchema())) {
      Ask(static_cast<PhotoOverlay&>(feature));
    }
  }
  GeometryCounter counter;
  counter.CountGeometry(folder);
  const GeoBoundingBox<double>& box = counter.GetBounds();
  ExpectFinite("bounds", box.low.x, box.low.y, box.low.z, box.high.x, box.high.y, box.high.z);
}

/// Numbers that no document gives.
void SetNumbers(Folder& folder, Texts& texts) {
  const ScreenOverlaySchema& fields = ScreenOverlaySchema::GetSingleton();
  SchemaObject& overlay = *folder.GetChild(0);
  fields.rotation.SetTypedObject(overlay, texts.Next().toFloat());
  for (const ScreenVecField* field : {&fields.overlayXY, &fields.screenXY, &fields.size}) {
    field->SetTypedObject(overlay, {texts.Next().toDouble(), texts.Next().toDouble()});
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  Texts texts(fuzz::Lines(data, size));
  const fuzz::Tree tree = fuzz::Read(Fill(kDocument, texts));
  if (!tree || !tree->isOfType(Folder::GetClassSchema())) {
    return 0; // a text with characters that no document holds
  }
  auto& folder = static_cast<Folder&>(*tree);
  const QByteArray written = fuzz::Write(tree);
  AskAll(folder, texts);
  if (fuzz::Write(tree) != written) {
    fuzz::Fail(QStringLiteral("asking changes what is written"));
  }
  const QByteArray again = fuzz::Write(fuzz::Read(written));
  if (again != written) {
    fuzz::Fail(QStringLiteral("no fixed point: ") + QString::fromUtf8(written + again));
  }
  SetNumbers(folder, texts);
  AskAll(folder, texts);
  return 0;
}
