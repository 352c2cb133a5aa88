#include "kestan/style/icon.h"

#include "kestan/core/deletiondeferrer.h"
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
std::int32_t Icon::*const Icon::kSides[IconRectangle::kSideCount] = {&Icon::x_, &Icon::y_,
                                                                     &Icon::w_, &Icon::h_};

namespace {

const IconSchema& Fields() { return IconSchema::GetSingleton(); }

RefPtr<Icon> s_default_icon;
RefPtr<Icon> s_default_photo_icon;

/// The side that a field holds; -1 for any other field.
int SideOf(const Field& field) {
  const auto& sides = Fields().sides;
  const auto place = std::find(std::begin(sides), std::end(sides), &field);
  return place == std::end(sides) ? -1 : static_cast<int>(place - std::begin(sides));
}

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
    : Icon(MakePaletteUrl(texId >> 8) + QStringLiteral("?x=%1&y=%2&w=%3&h=%3")
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

void Icon::SetX(int x) { SetSide(IconRectangle::kX, x); }
void Icon::SetY(int y) { SetSide(IconRectangle::kY, y); }
void Icon::SetW(int w) { SetSide(IconRectangle::kW, std::max(w, -1)); }
void Icon::SetH(int h) { SetSide(IconRectangle::kH, std::max(h, -1)); }

void Icon::SetSide(int side, int value) {
  const SimpleField<int>& field = *Fields().sides[side];
  if (this->*kSides[side] != value) {
    field.SetTypedObject(*this, value);
    return;
  }
  if (!rectangle_.IsSet(side))
    rectangle_.Set(side, value);
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
  return older.get(*this) != older.GetDefault() || href_.contains(QLatin1Char('?'));
}

bool Icon::HasSpecifiedX() const { return HasSpecified(IconRectangle::kX); }
bool Icon::HasSpecifiedY() const { return HasSpecified(IconRectangle::kY); }
bool Icon::HasSpecifiedW() const { return HasSpecified(IconRectangle::kW); }
bool Icon::HasSpecifiedH() const { return HasSpecified(IconRectangle::kH); }

void Icon::AdoptLegacyRectangle() {
  for (int side = 0; side < IconRectangle::kSideCount; ++side) {
    const SimpleField<int>& legacy = *Fields().legacySides[side];
    if (!(fieldsSpecified_ & legacy.GetMaskBit()) || HasSpecified(side))
      continue;
    const int value = legacy.get(*this);
    SetSide(side, IconRectangle::kNothing[side] == 0 ? value : std::max(value, -1));
  }
}

QString Icon::GetKeyText() const {
  // What a server is asked for depends on the view, too.
  return texId_ == kImageFile && urlType_ == kUrlNetwork ? GetAbsoluteUrl() : keyText_;
}

bool Icon::operator==(const Icon& other) const {
  return this == &other || CreateIconKey() == other.CreateIconKey();
}

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
  for (int side = 0; side < IconRectangle::kSideCount; ++side) {
    const int value = this->*kSides[side];
    if (value < 1)
      continue;
    if (!result.contains(QLatin1Char('?')))
      result += QLatin1Char('?');
    else if (!result.endsWith(QLatin1Char('&')))
      result += QLatin1Char('&');
    result += QLatin1String(IconRectangle::kParameters[side]) + QString::number(value);
  }
  return result;
}

QString Icon::MapPalIconToShape(short palette, int index) {
  ShowWholeImage();
  return GetShapeOfPaletteIcon(palette, index);
}

FromStringResult Icon::fromString(const QString& text) {
  ReadHref(text);
  return FromStringResult::kOk;
}

const Field* Icon::GetTextField() const { return &AbstractLinkSchema::GetSingleton().href; }

void Icon::SetNotGiven(const Field& field) {
  AbstractLink::SetNotGiven(field);
  if (const int side = SideOf(field); side >= 0) {
    rectangle_.Forget(side);
    ResetRectangle();
  }
}

void Icon::NotifyFieldChanged(const Field& field) {
  MarkChanged(field);
  const bool isHref = &field == &AbstractLinkSchema::GetSingleton().href;
  if (isHref) {
    fromBitmapForm_ = false;
    rectangle_.TakeQuery(href_);
  }
  const int side = SideOf(field);
  if (side >= 0)
    rectangle_.Set(side, this->*kSides[side]);
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
  const DeletionDeferrer deferrer;
  AbstractLink::merge(a, b);
  // Each side was set on the way; only those count that one of the two has.
  for (int side = 0; side < IconRectangle::kSideCount; ++side) {
    if (!HasSpecified(side))
      rectangle_.Forget(side);
  }
  const unsigned href = AbstractLinkSchema::GetSingleton().href.GetMaskBit();
  const SchemaObject& source = b.GetFieldsSpecified() & href ? b : a;
  if (source.isOfType(GetClassSchema()))
    makeAbsolute_ = static_cast<const Icon&>(source).makeAbsolute_;
  urlDirty_ = true;
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
  rectangle_ = icon.rectangle_;
  update();
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
