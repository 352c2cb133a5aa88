#include "kestan/style/labelstyle.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/labelstyleschema.h"

namespace vorrel::kestan {

template class SchemaT<LabelStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<LabelStyle>;

namespace {

const LabelStyleSchema& Fields() { return LabelStyleSchema::GetSingleton(); }

RefPtr<LabelStyle> s_default_label_style;

} // namespace

LabelStyleSchema::LabelStyleSchema()
    : SchemaT("LabelStyle", &ColorStyle::GetClassSchema(), Namespace::kKml) {
  scale.SetDefault(1.0F);
  heading.SetDefault(0.0F);
  overlappable.SetDefault(false);
  outlineColor.SetDefault(Color32(0xFF000000U));
  groupId.SetDefault(QString());
  text.SetDefault(QStringLiteral("$[name]"));
  hotSpot.SetDefault(LabelStyle::kDefaultHotSpot);
}

const Schema& LabelStyle::GetClassSchema() { return LabelStyleSchema::GetSingleton(); }

void LabelStyle::Initialize() {
  s_default_label_style = new (HeapManager::GetStaticHeap()) LabelStyle(KmlId(), QString());
}

void LabelStyle::Shutdown() { s_default_label_style.reset(); }

LabelStyle* LabelStyle::GetDefaultLabelStyle() { return s_default_label_style.get(); }

LabelStyle::LabelStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : MarkStyle(GetClassSchema(), id, baseUrl), text_(Fields().text.GetDefault()) {
  FinishCreation(notify);
}

LabelStyle::~LabelStyle() { NotifyPreDelete(); }

const MarkFields& LabelStyle::GetMarkFields() const { return Fields().mark; }

void LabelStyle::SetOutlineColor(const Color32& color) {
  Fields().outlineColor.CheckSet(*this, color, specified_);
}

void LabelStyle::SetGroupId(const QString& id) { Fields().groupId.CheckSet(*this, id, specified_); }

void LabelStyle::SetText(const QString& text) { Fields().text.CheckSet(*this, text, specified_); }

bool LabelStyle::operator==(const LabelStyle& other) const {
  return this == &other ||
         (HasEqualColors(other) && scale_ == other.scale_ && oldPlacement_ == other.oldPlacement_ &&
          headingMode_ == other.headingMode_ && facingMode_ == other.facingMode_ &&
          heading_ == other.heading_ && outlineColor_ == other.outlineColor_ &&
          hotSpotMode_ == other.hotSpotMode_ && groupId_ == other.groupId_ && text_ == other.text_);
}

} // namespace vorrel::kestan
