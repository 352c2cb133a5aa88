// Resolves the styles of some features of a document, given by their ids, and prints how to draw
// each of them as it is and under the mouse.
//
//   kestan-looks FILE ID...

#include "kestan/core/library.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/read/readkml.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/style.h"

#include <cstdio>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// The feature with this id in the document that `root` was read from; null when there's none.
const AbstractFeature* FindFeature(const SchemaObject& root, const QString& id) {
  const SchemaObject* object = SchemaObject::find(KmlId(id, root.GetUrl()));
  return object && object->isOfType(AbstractFeature::GetClassSchema())
             ? static_cast<const AbstractFeature*>(object)
             : nullptr;
}

/// What a renderer takes from a style. There's always a style, and each part of it is there: what
/// the document doesn't say has its default.
void PrintLook(const char* mode, const Style& style) {
  const IconStyle& icon = *style.GetIconStyle();
  const LineStyle& line = *style.GetLineStyle();
  const PolyStyle& area = *style.GetPolyStyle();
  // Colours are in the order of KML: alpha, blue, green, red.
  std::printf("  %s: icon %s in scale %g; lines %08x, %g pixels wide; areas %08x%s\n", mode,
              qUtf8Printable(icon.GetIcon()->GetAbsoluteUrl()),
              static_cast<double>(icon.GetScale()), line.GetColor().value,
              static_cast<double>(line.GetWidth()), area.GetColor().value,
              area.GetFill() ? "" : ", not filled");
}

int ShowLooks(const char* path, char** ids) {
  QString error;
  const RefPtr<SchemaObject> root = ReadKmlFile(QString::fromLocal8Bit(path), &error);
  if (!root) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(error));
    return 1;
  }
  int status = 0;
  for (; *ids; ++ids) {
    const AbstractFeature* feature = FindFeature(*root, QString::fromLocal8Bit(*ids));
    if (!feature) {
      std::fprintf(stderr, "no feature has the id \"%s\"\n", *ids);
      status = 1;
      continue;
    }
    std::printf("%s\n", qUtf8Printable(feature->GetName()));
    // Cheap enough for each feature of each frame: what was merged is kept until a style changes.
    PrintLook("normal", *feature->getRenderStyle(kStyleNormal));
    PrintLook("highlight", *feature->getRenderStyle(kStyleHighlight));
  }
  return status;
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: kestan-looks FILE ID...\n", stderr);
    return 2;
  }
  GInitialize();
  const int status = ShowLooks(argv[1], argv + 2);
  GShutdown();
  return status;
}
