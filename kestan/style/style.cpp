#include "kestan/style/style.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/builtinstyles.h"
#include "kestan/style/finalstyle.h"
#include "kestan/style/styleschema.h"
#include "kestan/style/stylevisitor.h"
#include "kestan/write/writestate.h" // shared styles are collected for the output

#include <string_view>
#include <tuple>

namespace vorrel::kestan {

template class SchemaT<Style, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Style>;

namespace {

const StyleSchema& Fields() { return StyleSchema::GetSingleton(); }

/// What stands in for a sub-style, by its class.
constexpr std::tuple kStandards{
    &LineStyle::GetDefaultLineStyle, &LabelStyle::GetDefaultLabelStyle,
    &IconStyle::GetDefaultIconStyle, &IconStackStyle::GetDefaultIconStackStyle,
    &PolyStyle::GetDefaultPolyStyle, &BalloonStyle::GetDefaultBalloonStyle,
    &ListStyle::GetDefaultListStyle};

const QString& GetDefaultStyleId() {
  static const QString id = QStringLiteral("default");
  return id;
}

/// The highlight of a generated style is larger than its normal look.
constexpr float kHighlightScale = 1.1F;

/// True when the two, which may be null, change any other object in the same way.
bool MergeAlike(const SchemaObject* a, const SchemaObject* b) {
  const unsigned mask = a ? a->GetFieldsSpecified() : 0;
  if (mask != (b ? b->GetFieldsSpecified() : 0))
    return false;
  if (mask == 0)
    return true;
  for (const Field* field : a->GetSchema().GetSerializedFields()) {
    if ((mask & field->GetMaskBit()) == 0)
      continue;
    const bool isChild = field->GetObjSchema() && !field->IsArray();
    if (!field->equals(*a, *b) ||
        (isChild && !MergeAlike(field->GetObject(*a, -1), field->GetObject(*b, -1))))
      return false;
  }
  return true;
}

} // namespace

StyleSchema::StyleSchema() : SchemaT("Style", &StyleSelector::GetClassSchema(), Namespace::kKml) {
  labelColor.SetDefault(Color32());
  geomColor.SetDefault(Color32());
  labelScale.SetDefault(1.0F);
  geomScale.SetDefault(1.0F);
  falseColorGeom.SetDefault(false);
  providerId.SetDefault(0);
}

const Schema& Style::GetClassSchema() { return StyleSchema::GetSingleton(); }

const QString& Style::GetRootStyleBase() {
  static const QString base = QStringLiteral("root://styles");
  return base;
}

const QString& Style::GetDefaultStyleUrl() {
  static const QString url = GetRootStyleBase() + QLatin1Char('#') + GetDefaultStyleId();
  return url;
}

Style* Style::GetDefaultStyle(int mode) {
  return mode == kStyleHighlight ? GetDefaultHighlightStyle() : GetDefaultStyle();
}

Style* Style::find(const KmlId& id) {
  SchemaObject* object = SchemaObject::find(id);
  return object && object->isOfType(GetClassSchema()) ? static_cast<Style*>(object) : nullptr;
}

Style* Style::find(const QString& url, const QString& id) { return find(KmlId(id, url)); }

RefPtr<Style> Style::create(const KmlId& id, const QString& baseUrl, MemoryManager* manager) {
  if (Style* present = find(id))
    return RefPtr<Style>(present);
  return RefPtr<Style>(new (manager) Style(id, baseUrl));
}

RefPtr<Style> Style::GetStyleFromUrl(const QString& url) {
  return url.isEmpty() ? GetDefaultStyle()->Clone() : create(KmlId(url), url, nullptr);
}

Style::Style(const KmlId& id, const QString& baseUrl, bool notify)
    : StyleSelector(GetClassSchema(), id, baseUrl) {
  if (id.id == GetDefaultStyleId() && id.url == GetRootStyleBase() && BuiltInStyles::Get())
    BuiltInStyles::Get()->defaultStyle = this;
  FinishCreation(notify);
}

Style::~Style() { NotifyPreDelete(); }

template <class T> const T* Style::Get() const {
  const T* own = (this->*std::get<RefPtr<T> Style::*>(Fields().parts)).get();
  return own ? own : std::get<T* (*)()>(kStandards)();
}

template <class T> T* Style::GetOrCreate() {
  const DeletionDeferrer deferrer;
  RefPtr<T>& own = this->*std::get<RefPtr<T> Style::*>(Fields().parts);
  if (!own)
    Set(new T(KmlId(QString(), GetUrl()), GetBaseUrl()));
  return own.get();
}

template <class T> void Style::Set(T* style) {
  const DeletionDeferrer deferrer;
  const unsigned offset = OffsetOf(std::get<RefPtr<T> Style::*>(Fields().parts));
  for (const Field* field : Fields().written) {
    if (field->GetOffset() == offset)
      static_cast<const ObjFieldBase*>(field)->Replace(*this, style);
  }
  ObjectObserver::MoveRevision(*this);
}

const LineStyle* Style::GetLineStyle() const { return Get<LineStyle>(); }
const LabelStyle* Style::GetLabelStyle() const { return Get<LabelStyle>(); }
const IconStyle* Style::GetIconStyle() const { return Get<IconStyle>(); }
const IconStackStyle* Style::GetIconStackStyle() const { return Get<IconStackStyle>(); }
const PolyStyle* Style::GetPolyStyle() const { return Get<PolyStyle>(); }
const BalloonStyle* Style::GetBalloonStyle() const { return Get<BalloonStyle>(); }
const ListStyle* Style::GetListStyle() const { return Get<ListStyle>(); }

LineStyle* Style::GetLineStyle() { return GetOrCreate<LineStyle>(); }
LabelStyle* Style::GetLabelStyle() { return GetOrCreate<LabelStyle>(); }
IconStyle* Style::GetIconStyle() { return GetOrCreate<IconStyle>(); }
IconStackStyle* Style::GetIconStackStyle() { return GetOrCreate<IconStackStyle>(); }
PolyStyle* Style::GetPolyStyle() { return GetOrCreate<PolyStyle>(); }
BalloonStyle* Style::GetBalloonStyle() { return GetOrCreate<BalloonStyle>(); }
ListStyle* Style::GetListStyle() { return GetOrCreate<ListStyle>(); }

void Style::_setLineStyle(LineStyle* style) { Set(style); }
void Style::_setLabelStyle(LabelStyle* style) { Set(style); }
void Style::_setIconStyle(IconStyle* style) { Set(style); }
void Style::_setIconStackStyle(IconStackStyle* style) { Set(style); }
void Style::_setPolyStyle(PolyStyle* style) { Set(style); }
void Style::_setBalloonStyle(BalloonStyle* style) { Set(style); }
void Style::_setListStyle(ListStyle* style) { Set(style); }

RefPtr<Style> Style::Clone() const {
  return RefPtr<Style>(static_cast<Style*>(clone(true, nullptr).get()));
}

RefPtr<Style> Style::CloneIcon(const QString& role, Icon& icon, bool* isNew) const {
  *isNew = true;
  if (GetId().isEmpty())
    return Clone();
  const KmlId id(GetId() + role + icon.GetKeyText(), GetUrl());
  if (Style* present = find(id)) {
    *isNew = false;
    return RefPtr<Style>(present);
  }
  const DeletionDeferrer deferrer;
  const RefPtr<Style> result(new Style(id, GetBaseUrl()));
  result->copy(*this, true, nullptr);
  // One that belongs to a style stays there.
  result->GetIconStyle()->SetIcon(
      icon.GetOwner(0) ? static_cast<Icon*>(icon.clone(true, nullptr).get()) : &icon);
  return result;
}

RefPtr<Style> Style::CloneIcon(Icon& icon) const {
  bool isNew = false;
  return CloneIcon(QStringLiteral("+icon="), icon, &isNew);
}

RefPtr<Style> Style::CloneHighlightIcon(Icon& icon) const {
  bool isNew = false;
  RefPtr<Style> result = CloneIcon(QStringLiteral("+hicon="), icon, &isNew);
  if (isNew) {
    IconStyle& iconStyle = *result->GetIconStyle();
    iconStyle.SetScale(iconStyle.GetScale() * kHighlightScale);
    LabelStyle& labelStyle = *result->GetLabelStyle();
    labelStyle.SetScale(labelStyle.GetScale() * kHighlightScale);
  }
  return result;
}

bool Style::UnspecifyRedundantFields(const Style& base) {
  const DeletionDeferrer deferrer;
  bool empty = true;
  Fields().ForEachPart([&]<class T>(RefPtr<T> Style::*member) {
    const RefPtr<T> own = this->*member;
    if (own && own->GetFieldsSpecified() != 0 && own->UnspecifyRedundantFields(*base.Get<T>()))
      Set<T>(nullptr);
    empty = empty && !(this->*member);
  });
  return empty;
}

bool Style::operator==(const Style& other) const {
  bool equal = true;
  Fields().ForEachPart([&]<class T>(RefPtr<T> Style::*) {
    const T* own = Get<T>();
    const T* others = other.Get<T>();
    equal = equal && (own == others || *own == *others);
  });
  return equal;
}

bool Style::MergesLike(const Style& other) const {
  for (const Field* field : Fields().written) {
    if (!MergeAlike(field->GetObject(*this, -1), field->GetObject(other, -1)))
      return false;
  }
  return true;
}

void Style::accept(StyleVisitor& visitor) { visitor.visit(*this); }

RefPtr<StyleSelector> Style::InternalFlatten(const StyleSelector* other, bool entered) const {
  if (other && !entered)
    return other->InternalFlatten(this, true);
  const bool isStyle = other && other->isOfType(GetClassSchema());
  if (!isStyle) {
    const QString id = GetId().isEmpty() ? QStringLiteral("style") : GetId();
    return RefPtr<StyleSelector>(
        static_cast<Style*>(clone(KmlId(id, GetUrl()), true, nullptr).get()));
  }
  FinalStyle merged;
  merged.MergeStyles(static_cast<const Style&>(*other), *this);
  const QString id = other->GetId().isEmpty() ? QStringLiteral("fstyle") : other->GetId();
  return RefPtr<StyleSelector>(
      static_cast<Style*>(merged.clone(KmlId(id, other->GetUrl()), true, nullptr).get()));
}

void Style::InternalCollectStyles(WriteState& state) const { state.AddStyle(*this); }

const Style* Style::InternalGetSelectedStyle(int) const { return this; }

void Style::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  if (field.HasFlag(Field::kProxy))
    ApplyDeprecated(field);
  StyleSelector::NotifyFieldChanged(field);
}

void Style::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema()) && static_cast<const Style&>(src).providerId_ != 0)
    Fields().providerId.copy(*this, src, false);
  StyleSelector::CopyNonFieldStuff(src);
}

namespace {

/// True when the element that starts at `position`, and ends the text so far, holds no element.
bool IsEmptyElement(const Utf8OStream& stream, std::size_t position) {
  const std::string_view text(stream.data() + position, stream.size() - position);
  const std::size_t content = text.find_first_not_of("\t", text.find('\n') + 1);
  return content != std::string_view::npos && text.substr(content, 2) == "</";
}

/// `isKept` is for one that says nothing and is written all the same.
void WriteSubStyle(const SchemaObject& style, bool isKept, WriteState& state) {
  isKept = isKept || style.HasUnknownData() || !style.GetId().isEmpty();
  if (style.GetFieldsSpecified() == 0 && !isKept)
    return;
  Utf8OStream& stream = state.stream();
  const std::size_t start = stream.size();
  style.WriteKml(state);
  // A style of defaults only would be gone after the next reading.
  if (!isKept && IsEmptyElement(stream, start))
    stream.Commit(stream.data() + start);
}

} // namespace

void Style::WriteKml(WriteState& state) const {
  WriteKmlStartTag(state, false);
  for (const Field* field : Fields().GetSerializedFields()) {
    if (!field->GetObjSchema() && KeepsElement(*field))
      WriteField(*field, state);
  }
  const bool former = state.writeDefaults();
  state.SetWriteDefaults(former || state.styleDefaultsEnabled());
  for (const Field* field : Fields().written) {
    WriteDisplaced(*field, state);
    if (const SchemaObject* style = field->GetObject(*this, -1))
      WriteSubStyle(*style, KeepsElement(*field), state);
  }
  state.SetWriteDefaults(former);
  WriteUnknownFields(state);
  WriteKmlEndTag(state, false);
}

} // namespace vorrel::kestan
