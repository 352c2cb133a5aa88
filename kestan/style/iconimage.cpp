// What the reference of an icon leads to: a tile of a palette, a shape that clients have built in,
// or some file.

#include "kestan/core/library.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/resources.h"
#include "kestan/host/url.h"
#include "kestan/style/iconpalette.h"
#include "kestan/style/iconschema.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

constexpr char kBitmapPrefix[] = "root://icons/bitmap-";
constexpr char kPalettePrefix[] = "root://icons/palette-";

bool StartsWith(const QString& text, const char* prefix) {
  return text.startsWith(QLatin1String(prefix));
}

/// The digit that stands at `position`; -1 for anything else there.
int DigitAt(const QString& text, int position) {
  if (position >= text.size())
    return -1;
  const ushort digit = text[position].unicode();
  return digit >= '0' && digit <= '9' ? digit - '0' : -1;
}

ResourceRecord FindResource(const QString& name, const QString& extension) {
  const ResourceManager* resources = GetResourceManager();
  return resources ? resources->Find(name, extension) : ResourceRecord{};
}

QString Png() { return QLatin1String(ResourceManager::kResourceTypePng); }

} // namespace

void Icon::update() {
  if (!ThreadContext::GetCurrent())
    return;
  texId_ = kUnknownImage;
  paletteNumber_ = -1;
  hotSpotKind_ = kNoHotSpot;
  wholeImage_ = false;
  isPalette_ = false;
  urlType_ = 0;
  ResetRectangle();
  if (urlDirty_)
    Resolve();
  absoluteUrl_ = keyText_ = resolvedUrl_;
  if (href_.isEmpty())
    texId_ = kNoImage;
  else if (absoluteUrl_.isEmpty())
    keyText_ = href_; // images that can't be had are told apart all the same
  else
    Classify();
}

void Icon::Resolve() {
  if (makeAbsolute_ && HasLongQuery()) {
    // What is sent to a server is put together when it's asked for, not with each new reference. No
    // image that is at hand has such a name.
    resolvedUrl_ = GetResourceUrl();
    urlDirty_ = GGetUrlType(resolvedUrl_) == kUrlNetwork;
    return;
  }
  if (makeAbsolute_)
    KeepAbsoluteUrl();
  else
    absoluteUrl_ = href_;
  urlDirty_ = false;
  resolvedUrl_ = absoluteUrl_;
}

void Icon::ResetRectangle() {
  for (int side = 0; side < IconRectangle::kSideCount; ++side) {
    const std::optional<std::int32_t> value = rectangle_.Get(side);
    this->*kSides[side] = value.value_or(IconRectangle::kNothing[side]);
    const unsigned bit = IconSchema::GetSingleton().sides[side]->GetMaskBit();
    fieldsSpecified_ = value ? fieldsSpecified_ | bit : fieldsSpecified_ & ~bit;
  }
  if (fromBitmapForm_)
    MapOldRows();
}

void Icon::MapOldRows() {
  x_ = std::clamp(x_ / kTileSize, 0, kTilesPerSide - 1) * kTileSize;
  y_ = OldRowToNew(y_ / kTileSize) * kTileSize;
}

void Icon::Classify() {
  urlType_ = GGetUrlType(absoluteUrl_);
  if (urlType_ == kUrlFlatfile) {
    texId_ = kFlatfileImage;
    return;
  }
  bool showsTile = false;
  if (StartsWith(absoluteUrl_, kBitmapPrefix) &&
      !TakeBitmapForm(DigitAt(absoluteUrl_, static_cast<int>(sizeof(kBitmapPrefix)) - 1)))
    return;
  if (StartsWith(absoluteUrl_, kPalettePrefix)) {
    isPalette_ = true;
    const int palette = DigitAt(absoluteUrl_, static_cast<int>(sizeof(kPalettePrefix)) - 1);
    showsTile = TakeTile(palette, x_ / kTileSize, y_ / kTileSize);
    if (!showsTile)
      return;
  } else if (!urlDirty_ && StartsWith(absoluteUrl_, kIconServerBase)) {
    showsTile = TakeServerForm(absoluteUrl_.mid(static_cast<int>(sizeof(kIconServerBase)) - 1));
  } else {
    texId_ = kImageFile;
  }
  if (showsTile && ShowTile())
    return;
  const int query = static_cast<int>(keyText_.lastIndexOf(QLatin1Char('?')));
  if (urlType_ != kUrlNetwork && query >= 0)
    keyText_.truncate(query);
}

bool Icon::TakeBitmapForm(int palette) {
  if (palette < 0)
    return false;
  fromBitmapForm_ = true;
  MapOldRows();
  href_ = absoluteUrl_ = keyText_ = resolvedUrl_ = MakePaletteUrl(palette);
  return true;
}

bool Icon::TakeTile(int palette, int column, int row) {
  const auto isInside = [](int tile) { return tile >= 0 && tile < kTilesPerSide; };
  if (palette < 0 || !isInside(column) || !isInside(row))
    return false;
  paletteNumber_ = static_cast<short>(palette);
  texId_ = static_cast<short>(palette << 8 | row << 4 | column);
  x_ = column * kTileSize;
  y_ = row * kTileSize;
  return true;
}

/// `rest` is what stands behind the base of the icon server. True for a tile of a palette.
bool Icon::TakeServerForm(const QString& rest) {
  if (rest.startsWith(QLatin1String("pal"))) {
    // As in "pal2/icon12.png".
    constexpr int kPalettePosition = 3;
    constexpr int kNumberPosition = 9;
    constexpr int kSuffixLength = 4;
    constexpr int kMaxDigits = 9;
    bool isNumber = false;
    const int length = static_cast<int>(rest.size()) - kNumberPosition - kSuffixLength;
    const int index =
        length > 0 && length <= kMaxDigits ? rest.mid(kNumberPosition, length).toInt(&isNumber) : 0;
    if (!isNumber || index < 0)
      return false;
    const int row = kTilesPerSide - 1 - index / kTilesPerSide;
    isPalette_ = TakeTile(DigitAt(rest, kPalettePosition), index % kTilesPerSide, row);
    return isPalette_;
  }
  const QStringList parts = rest.split(QLatin1Char('.'));
  const ResourceRecord record = parts.size() == 2
                                    ? FindResource(parts[0], parts[1])
                                    : FindResource(QStringLiteral("ylw-pushpin"), Png());
  texId_ = record.found ? kBuiltInImage : kImageFile;
  if (record.found)
    keyText_ = record.text;
  return false;
}

bool Icon::ShowTile() {
  absoluteUrl_ = MapTexIdToIconFile(static_cast<unsigned short>(texId_));
  const int index = x_ / kTileSize + (kTilesPerSide - 1 - y_ / kTileSize) * kTilesPerSide;
  const ResourceRecord record = FindResource(MapPalIconToShape(paletteNumber_, index), Png());
  texId_ = record.found ? kBuiltInImage : kUnknownImage;
  keyText_ = record.found ? record.text : absoluteUrl_;
  if (!record.found)
    return false;
  hotSpotKind_ = IsCentredPaletteIcon(paletteNumber_, index) ? kCentre : kBottomCentre;
  return true;
}

void Icon::ShowWholeImage() {
  wholeImage_ = true;
  w_ = h_ = -1;
}

} // namespace vorrel::kestan
