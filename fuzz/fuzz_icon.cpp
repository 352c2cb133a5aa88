// Bytes to icons: whatever the reference and the rectangle, an icon shows the same however it came
// to them, and comes back from KML as it was.
//
// Lines of the input: the reference, then x, y, w and h where they are given.

#include "fuzz/support.h"

#include "kestan/core/kmlid.h"
#include "kestan/feature/folder.h"
#include "kestan/host/url.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconpalette.h"
#include "kestan/style/style.h"

#include <algorithm>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

constexpr int kSides = 4;
const char* const kNames[kSides] = {"x", "y", "w", "h"};

/// A reference, and the sides of the rectangle that are given.
struct Input {
  QString href;
  int sides[kSides] = {};
  bool given[kSides] = {};
};

Input Parse(const QStringList& lines) {
  Input input;
  input.href = lines.value(0);
  for (int i = 0; i < kSides; ++i) {
    input.sides[i] = lines.value(i + 1).toInt(&input.given[i]);
  }
  return input;
}

QString Describe(const Icon& icon) {
  return QStringLiteral("%1 %2,%3,%4,%5 tile %6 palette %7 whole %8 url ")
             .arg(icon.GetKeyText())
             .arg(icon.GetX())
             .arg(icon.GetY())
             .arg(icon.GetW())
             .arg(icon.GetH())
             .arg(icon.GetTexId())
             .arg(icon.GetPaletteNumber())
             .arg(icon.IsWholeImage()) +
         icon.GetAbsoluteUrl();
}

void ExpectSame(const char* what, const Icon& a, const Icon& b) {
  const QString first = Describe(a);
  const QString second = Describe(b);
  if (first != second) {
    fuzz::Fail(QStringLiteral("%1: %2: %3; %4: %5")
                   .arg(QLatin1String(what), a.GetHref(), first, b.GetHref(), second));
  }
}

void SetSides(Icon& icon, const Input& input) {
  const auto set = [&](int side, auto setter) {
    if (input.given[side]) {
      (icon.*setter)(input.sides[side]);
    }
  };
  set(3, &Icon::SetH);
  set(2, &Icon::SetW);
  set(1, &Icon::SetY);
  set(0, &Icon::SetX);
}

void CheckOrder(const Input& input) {
  const RefPtr<Icon> before = Icon::CreateEmptyIcon();
  SetSides(*before, input);
  before->SetHref(input.href);
  const RefPtr<Icon> after = Icon::create(input.href);
  SetSides(*after, input);
  ExpectSame("the order counts", *before, *after);
  const RefPtr<SchemaObject> copy = after->clone(true, nullptr);
  ExpectSame("a copy differs", *after, static_cast<Icon&>(*copy));
  if (after->GetTexId() > 0 || after->GetW() < -1 || after->GetH() < -1) {
    fuzz::Fail(Describe(*after));
  }
  if (after->IsWholeImage() != (after->GetHotSpotOverride() != nullptr) &&
      after->GetTexId() == Icon::kBuiltInImage) {
    fuzz::Fail(QStringLiteral("a hot spot: ") + Describe(*after));
  }
  // A change and the way back leave nothing.
  after->SetHref(QStringLiteral("http://example.com/other.png"));
  after->SetHref(input.href);
  ExpectSame("something is left", *before, *after);

  const RefPtr<Icon> texture = Icon::CreateFromTextureName(input.href);
  if (texture->GetTexId() == Icon::kImageFile && texture->GetAbsoluteUrl() != texture->GetHref()) {
    fuzz::Fail(QStringLiteral("a texture's name is resolved: ") + Describe(*texture));
  }
}

QString Element(const char* name, const QString& text) {
  return QStringLiteral("<%1>%2</%1>").arg(QLatin1String(name), text.toHtmlEscaped());
}

RefPtr<Icon> GetIcon(const fuzz::Tree& tree) {
  if (!tree || !tree->isOfType(Folder::GetClassSchema())) {
    fuzz::Fail(QStringLiteral("the folder isn't read"));
  }
  return RefPtr<Icon>(static_cast<Folder&>(*tree).GetIcon());
}

void CheckRoundTrip(const Input& input) {
  // Only the half of such an image which is shown is named, and any path can lead to the store.
  if (input.href.contains(QLatin1String("flatfile"))) {
    return;
  }
  const auto isIllFormed = [](QChar c) { return c < QLatin1Char(' ') || c >= QChar(0xFFFE); };
  if (std::any_of(input.href.begin(), input.href.end(), isIllFormed)) {
    return;
  }
  QString content = Element("href", input.href);
  for (int i = 0; i < kSides; ++i) {
    if (input.given[i]) {
      content += Element((QByteArray(i % 2 != 0 ? "gx:" : "") + kNames[i]).constData(),
                         QString::number(input.sides[i]));
    }
  }
  const QString text =
      "<Folder xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><Icon>" + content + "</Icon></Folder>";
  const fuzz::Tree first = fuzz::Read(text.toUtf8(), QStringLiteral("/dir/fuzz.kml"));
  const RefPtr<Icon> icon = GetIcon(first);
  const QString& href = icon->GetHref();
  if (href != href.trimmed() || (GIsUrlAbsolute(href) && !GIsUrlAbsolute(icon->GetAbsoluteUrl()))) {
    return; // blanks that stood before a query; a path of which nothing is left but its end
  }
  const QByteArray written = fuzz::Write(first);
  const fuzz::Tree second = fuzz::Read(written, QStringLiteral("/dir/fuzz.kml"));
  ExpectSame("the icon doesn't come back", *icon, *GetIcon(second));
  if (fuzz::Write(second) != written) {
    fuzz::Fail(QStringLiteral("no fixed point: ") + QString::fromUtf8(written));
  }
}

/// A tile's own file is the same icon as the tile.
void CheckTiles(const Input& input) {
  const auto id = static_cast<unsigned short>(input.sides[0]);
  const RefPtr<Icon> tile = Icon::CreateFromTexId(id);
  if (tile->GetTexId() == Icon::kBuiltInImage) {
    ExpectSame("a tile's file", *tile, *Icon::create(tile->GetAbsoluteUrl()));
  }
}

/// The reference as the id of a built-in style.
void CheckBuiltInStyle(const Input& input) {
  const RefPtr<StyleSelector> made =
      StyleSelector::resolve(KmlId(input.href, Style::GetRootStyleBase()));
  if (!made || !made->InternalGetSelectedStyle(0)) {
    fuzz::Fail(QStringLiteral("no built-in style: ") + input.href);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const Input input = Parse(fuzz::Lines(data, size));
  CheckOrder(input);
  CheckRoundTrip(input);
  CheckTiles(input);
  CheckBuiltInStyle(input);
  return 0;
}
