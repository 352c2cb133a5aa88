#include "kestan/style/icon.h"

#include "kestan/core/library.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/resources.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/style/iconpalette.h"
#include "kestan/style/iconschema.h"

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

template class SchemaT<Icon, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Icon>;

unsigned Icon::s_refresh_stamp = 0;
std::int32_t Icon::*const Icon::kSides[kSideCount] = {&Icon::x_, &Icon::y_, &Icon::w_, &Icon::h_};

namespace {

enum Side { kX, kY, kW, kH };

const char* const kSideParameters[] = {"x=", "y=", "w=", "h="};
constexpr int kNoRectangle[] = {0, 0, -1, -1};

constexpr unsigned char SideBit(int side) { return static_cast<unsigned char>(1U << side); }

constexpr char kBitmapPrefix[] = "root://icons/bitmap-";
constexpr char kPalettePrefix[] = "root://icons/palette-";

const IconSchema& Fields() { return IconSchema::GetSingleton(); }

RefPtr<Icon> s_default_icon;
RefPtr<Icon> s_default_photo_icon;

bool StartsWith(const QString& text, const char* prefix) {
  return text.startsWith(QLatin1String(prefix));
}

QString PaletteUrl(int palette) {
  return QStringLiteral("root://icons/palette-%1.png").arg(palette);
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

/// The side that a parameter of a URL gives a value to; -1 for any other parameter.
int SideOf(const QString& parameter, int& value) {
  for (int side = kX; side <= kH; ++side) {
    if (!parameter.startsWith(QLatin1String(kSideParameters[side])))
      continue;
    bool isNumber = false;
    value = parameter.mid(2).toInt(&isNumber);
    if (side == kW || side == kH)
      value = std::max(value, -1);
    return isNumber ? side : -1;
  }
  return -1;
}

/// The side that a field holds; -1 for any other field.
int SideOf(const Field& field) {
  const auto& sides = Fields().sides;
  const auto place = std::find(std::begin(sides), std::end(sides), &field);
  return place == std::end(sides) ? -1 : static_cast<int>(place - std::begin(sides));
}

int LastQuery(const QString& url) { return static_cast<int>(url.lastIndexOf(QLatin1Char('?'))); }

void ChopSeparators(QString& query) {
  while (query.endsWith(QLatin1Char('&')))
    query.chop(1);
}

QString Png() { return QLatin1String(ResourceManager::kResourceTypePng); }

} // namespace

void IconSideField::WriteKml(const SchemaObject& object, WriteState& state) const {
  WriteValue(object, state,
             get(object) != GetDefault() ||
                 static_cast<const Icon&>(object).IsSpecifiedAgainstOthers(*this));
}

IconSchema::IconSchema() : SchemaT("Icon", &AbstractLink::GetClassSchema(), Namespace::kKml) {
  using Sides = std::initializer_list<SimpleField<int>*>;
  for (SimpleField<int>* field : Sides{&x, &y, &legacyX, &legacyY})
    field->SetDefault(0);
  for (SimpleField<int>* field : Sides{&w, &h, &legacyW, &legacyH})
    field->SetDefault(-1);
  w.SetMin(-1);
  h.SetMin(-1);
}

const Schema& Icon::GetClassSchema() { return IconSchema::GetSingleton(); }

Icon::Icon(const KmlId& id, const QString& baseUrl, const QString& url, bool makeAbsolute,
           bool clientFlag)
    : AbstractLink(GetClassSchema(), id, baseUrl) {
  init(url, makeAbsolute, clientFlag);
  NotifyPostCreate();
}

Icon::Icon(const KmlId& id, const QString& baseUrl) : Icon(id, baseUrl, true) {}

Icon::Icon(const KmlId& id, const QString& baseUrl, bool clientFlag)
    : Icon(id, baseUrl, QString(), true, clientFlag) {}

Icon::Icon(const QString& url, bool makeAbsolute, bool clientFlag)
    : Icon(KmlId(), QString(), url, makeAbsolute, clientFlag) {}

Icon::Icon(const QString& url, bool clientFlag) : Icon(url, true, clientFlag) {}

Icon::Icon(bool clientFlag) : Icon(QString(), true, clientFlag) {}

Icon::Icon() : Icon(true) {}

Icon::Icon(unsigned short texId, bool clientFlag)
    : Icon(PaletteUrl(texId >> 8) + QStringLiteral("?x=%1&y=%2&w=%3&h=%3")
                                        .arg((texId & 15) * kTileSize)
                                        .arg(((texId >> 4) & 15) * kTileSize)
                                        .arg(kTileSize),
           true, clientFlag) {}

Icon::~Icon() { NotifyPreDelete(); }

void Icon::init(const QString& url, bool makeAbsolute, bool clientFlag) {
  makeAbsolute_ = makeAbsolute;
  clientFlag_ = clientFlag;
  if (!url.isEmpty()) // else nobody gave a reference
    SetHref(url);
}

RefPtr<Icon> Icon::CreateEmptyIcon(bool clientFlag) { return RefPtr<Icon>(new Icon(clientFlag)); }

RefPtr<Icon> Icon::CreateFromTextureName(const QString& name, bool clientFlag) {
  return name.isEmpty() ? CreateEmptyIcon(clientFlag)
                        : RefPtr<Icon>(new Icon(name, false, clientFlag));
}

RefPtr<Icon> Icon::create(const QString& url, bool clientFlag) {
  return url.isEmpty() ? CreateEmptyIcon(clientFlag)
                       : RefPtr<Icon>(new Icon(url, true, clientFlag));
}

RefPtr<Icon> Icon::CreateFromTexId(unsigned short id, bool clientFlag) {
  constexpr unsigned short kLastWithoutPalette = 255;
  return id > kLastWithoutPalette ? RefPtr<Icon>(new Icon(id, clientFlag))
                                  : CreateEmptyIcon(clientFlag);
}

RefPtr<Icon> Icon::CreateDefaultIcon() {
  const RefPtr<SchemaObject> icon = s_default_icon->clone(true, nullptr);
  return RefPtr<Icon>(static_cast<Icon*>(icon.get()));
}

Icon* Icon::GetDefaultIcon() { return s_default_icon.get(); }

Icon* Icon::GetDefaultPhotoIcon() { return s_default_photo_icon.get(); }

void Icon::Initialize() {
  const QString base = QLatin1String(kIconServerBase);
  s_default_icon = create(base + QLatin1String("pushpin/ylw-pushpin.png"));
  s_default_photo_icon = create(base + QLatin1String("shapes/camera.png"));
}

void Icon::Shutdown() {
  s_default_icon.reset();
  s_default_photo_icon.reset();
}

void Icon::SetX(int x) { SetSide(kX, x); }
void Icon::SetY(int y) { SetSide(kY, y); }
void Icon::SetW(int w) { SetSide(kW, std::max(w, -1)); }
void Icon::SetH(int h) { SetSide(kH, std::max(h, -1)); }

void Icon::SetSide(int side, int value) {
  const SimpleField<int>& field = *Fields().sides[side];
  if (this->*kSides[side] != value) {
    field.SetTypedObject(*this, value);
    return;
  }
  if (!(givenSides_ & SideBit(side)))
    given_[side] = value;
  givenSides_ |= SideBit(side);
  ObjectObserver::SetSpecified(*this, fieldsSpecified_, fieldsSpecified_ | field.GetMaskBit());
}

bool Icon::HasSpecified(int side) const {
  return (fieldsSpecified_ & Fields().sides[side]->GetMaskBit()) != 0;
}

bool Icon::IsSpecifiedAgainstOthers(const Field& field) const {
  const int side = SideOf(field);
  if (side < 0 || !HasSpecified(side))
    return false;
  const SimpleField<int>& older = *Fields().legacySides[side];
  return older.get(*this) != older.GetDefault() || LastQuery(href_) >= 0;
}

bool Icon::HasSpecifiedX() const { return HasSpecified(kX); }
bool Icon::HasSpecifiedY() const { return HasSpecified(kY); }
bool Icon::HasSpecifiedW() const { return HasSpecified(kW); }
bool Icon::HasSpecifiedH() const { return HasSpecified(kH); }

void Icon::AdoptLegacyRectangle() {
  for (int side = 0; side < kSideCount; ++side) {
    const SimpleField<int>& legacy = *Fields().legacySides[side];
    if (!(fieldsSpecified_ & legacy.GetMaskBit()) || HasSpecified(side))
      continue;
    const int value = legacy.get(*this);
    SetSide(side, side == kX || side == kY ? value : std::max(value, -1));
  }
}

const QString& Icon::GetKeyText() const {
  // What a server is asked for depends on the view, too.
  return texId_ == kImageFile && urlType_ == kUrlNetwork ? GetAbsoluteUrl() : keyText_;
}

bool Icon::operator==(const Icon& other) const { return CreateIconKey() == other.CreateIconKey(); }

const LegacyScreenVec* Icon::GetHotSpotOverride() const {
  constexpr auto kFraction = LegacyScreenVec::kFraction;
  static const LegacyScreenVec centre{0.5, 0.5, kFraction, kFraction};
  static const LegacyScreenVec bottomCentre{0.5, 0.0, kFraction, kFraction};
  return hotSpotKind_ == kCentre         ? &centre
         : hotSpotKind_ == kBottomCentre ? &bottomCentre
                                         : nullptr;
}

QString Icon::AppendPaletteParams(const QString& url) const {
  QString result = url;
  for (int side = 0; side < kSideCount; ++side) {
    const int value = this->*kSides[side];
    if (value < 1)
      continue;
    if (!result.contains(QLatin1Char('?')))
      result += QLatin1Char('?');
    else if (!result.endsWith(QLatin1Char('&')))
      result += QLatin1Char('&');
    result += QLatin1String(kSideParameters[side]) + QString::number(value);
  }
  return result;
}

QString Icon::MapPalIconToShape(short palette, int index) {
  ShowWholeImage();
  return GetShapeOfPaletteIcon(palette, index);
}

unsigned short Icon::GetOldNormal(unsigned short old) {
  const unsigned cleared = old & 16U ? 32U : 48U;
  return static_cast<unsigned short>(old & ~cleared);
}

unsigned short Icon::GetOldHighlight(unsigned short old) {
  return static_cast<unsigned short>(GetOldNormal(old) | 32U);
}

int Icon::OldRowToNew(int row) {
  constexpr int kNewRows[] = {0, 1, 1, 2, 3, 3, 4, 4};
  return kNewRows[std::clamp(row, 0, kTilesPerSide - 1)];
}

unsigned short Icon::OldToNew(int palette, int row, int column) {
  return static_cast<unsigned short>(OldRowToNew(row) * 16 | (column & 7) | palette << 8);
}

unsigned short Icon::OldToNew(unsigned short old) {
  const int group = (old & 48) >> 4;
  int row = 0;
  if (old & 8)
    row = group < 2 ? group + 3 : 5;
  else if (old & 16)
    row = old & 32 ? 7 : 6;
  else
    row = std::min(group, 2);
  return OldToNew(old >> 8, row, old & 7);
}

FromStringResult Icon::fromString(const QString& text) {
  SetHref(text);
  return FromStringResult::kOk;
}

void Icon::NotifyFieldChanged(const Field& field) {
  MarkChanged(field);
  const bool isHref = &field == &AbstractLinkSchema::GetSingleton().href;
  if (isHref) {
    fromBitmapForm_ = false;
    queryTaken_ = false;
  }
  const int side = SideOf(field);
  if (side >= 0) {
    given_[side] = this->*kSides[side];
    givenSides_ |= SideBit(side);
  }
  // A URL may be long, and an icon may be told of many changes. So it's looked at only where the
  // outcome can be another one.
  if (isHref || (side >= 0 && isPalette_) ||
      (urlDirty_ && (texId_ != kImageFile || !makeAbsolute_)))
    update();
  else if (side >= 0)
    ResetRectangle();
  SchemaObject::NotifyFieldChanged(field);
}

void Icon::merge(const SchemaObject& a, const SchemaObject& b) {
  AbstractLink::merge(a, b);
  // Each side was set on the way; only those count that one of the two has.
  for (int side = 0; side < kSideCount; ++side) {
    if (!HasSpecified(side))
      givenSides_ &= static_cast<unsigned char>(~SideBit(side));
  }
  const unsigned href = AbstractLinkSchema::GetSingleton().href.GetMaskBit();
  const SchemaObject& source = b.GetFieldsSpecified() & href ? b : a;
  if (source.isOfType(GetClassSchema()))
    makeAbsolute_ = static_cast<const Icon&>(source).makeAbsolute_;
  update();
}

void Icon::CopyNonFieldStuff(const SchemaObject& src) {
  AbstractLink::CopyNonFieldStuff(src);
  if (!src.isOfType(GetClassSchema()))
    return;
  const auto& icon = static_cast<const Icon&>(src);
  refreshStamp_ = icon.refreshStamp_;
  makeAbsolute_ = icon.makeAbsolute_;
  fromBitmapForm_ = icon.fromBitmapForm_;
  queryTaken_ = icon.queryTaken_;
  hasQuery_ = icon.hasQuery_;
  queriedSides_ = icon.queriedSides_;
  givenSides_ = icon.givenSides_;
  std::copy(std::begin(icon.queried_), std::end(icon.queried_), queried_);
  std::copy(std::begin(icon.given_), std::end(icon.given_), given_);
  update();
}

void Icon::update() {
  if (!ThreadContext::GetCurrent())
    return;
  texId_ = kUnknownImage;
  paletteNumber_ = -1;
  hotSpotKind_ = kNoHotSpot;
  wholeImage_ = false;
  isPalette_ = false;
  urlType_ = 0;
  if (!queryTaken_)
    TakeQuery();
  ResetRectangle();
  if (href_.isEmpty()) {
    texId_ = kNoImage;
    absoluteUrl_ = keyText_ = QString();
    urlDirty_ = false;
    return;
  }
  urlDirty_ = makeAbsolute_;
  if (!makeAbsolute_)
    absoluteUrl_ = href_;
  keyText_ = GetAbsoluteUrl();
  if (!absoluteUrl_.isEmpty())
    Classify();
}

void Icon::ResetRectangle() {
  for (int side = 0; side < kSideCount; ++side) {
    const bool isGiven = givenSides_ & SideBit(side);
    const bool isQueried = queriedSides_ & SideBit(side);
    const bool isTileSize = hasQuery_ && (side == kW || side == kH) && (x_ > 0 || y_ > 0);
    const unsigned bit = Fields().sides[side]->GetMaskBit();
    if (isGiven || isQueried || isTileSize) {
      this->*kSides[side] = isGiven ? given_[side] : isQueried ? queried_[side] : kTileSize;
      fieldsSpecified_ |= bit;
    } else {
      this->*kSides[side] = kNoRectangle[side];
      fieldsSpecified_ &= ~bit;
    }
  }
  if (fromBitmapForm_)
    MapOldRows();
}

void Icon::MapOldRows() {
  x_ = std::clamp(x_ / kTileSize, 0, kTilesPerSide - 1) * kTileSize;
  y_ = OldRowToNew(y_ / kTileSize) * kTileSize;
}

/// Of several values for one side the first counts. What is left of the reference, taken as one, is
/// left alone: a copy shows the same.
void Icon::TakeQuery() {
  queryTaken_ = true;
  queriedSides_ = 0;
  int start = LastQuery(href_);
  hasQuery_ = start >= 0;
  if (!hasQuery_)
    return;
  // A server may mean something else by these parameters, so that it gets them all the same.
  const QString url = makeAbsolute_ ? AbstractLink::GetResourceUrl() : href_;
  const bool isServer = GGetUrlType(url) == kUrlNetwork;
  QString rest;
  for (; start >= 0 && rest.isEmpty(); start = LastQuery(href_)) {
    ChopSeparators(href_);
    QStringList kept;
    for (const QString& parameter : href_.mid(start + 1).split(QLatin1Char('&'))) {
      int value = 0;
      const int side = SideOf(parameter, value);
      if (side >= 0 && !(queriedSides_ & SideBit(side))) {
        queried_[side] = value;
        queriedSides_ |= SideBit(side);
      }
      if (isServer || side < 0)
        kept += parameter;
    }
    rest = kept.join(QLatin1Char('&'));
    ChopSeparators(rest);
    href_.truncate(start);
    if (!rest.isEmpty())
      href_ += QLatin1Char('?') + rest;
  }
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
  } else if (StartsWith(absoluteUrl_, kIconServerBase)) {
    showsTile = TakeServerForm(absoluteUrl_.mid(static_cast<int>(sizeof(kIconServerBase)) - 1));
  } else {
    texId_ = kImageFile;
  }
  if (showsTile && ShowTile())
    return;
  const int query = LastQuery(keyText_);
  if (urlType_ != kUrlNetwork && query >= 0)
    keyText_.truncate(query);
}

bool Icon::TakeBitmapForm(int palette) {
  if (palette < 0)
    return false;
  fromBitmapForm_ = true;
  MapOldRows();
  href_ = absoluteUrl_ = keyText_ = PaletteUrl(palette);
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

QString Icon::GetResourceUrl() const {
  // A tile has its own file; that of its palette has no URL outside of this program.
  if (wholeImage_)
    return absoluteUrl_;
  return makeAbsolute_ ? AbstractLink::GetResourceUrl() : href_;
}

void Icon::WriteKml(WriteState& state) const {
  if (!href_.contains(QLatin1String("flatfile")) || !href_.endsWith(QLatin1String("_nh.png"))) {
    AbstractLink::WriteKml(state);
    return;
  }
  // One file holds the normal image above the highlighted one; the document names that of the two
  // which is shown. The object is its own scratch copy for it.
  constexpr int kSuffixLength = 6;
  auto& self = const_cast<Icon&>(*this);
  QString written =
      href_.left(href_.size() - kSuffixLength) + QLatin1String(y_ == kTileSize ? "h.png" : "n.png");
  std::swap(self.href_, written);
  AbstractLink::WriteKml(state);
  std::swap(self.href_, written);
}

} // namespace vorrel::kestan
