#include "kestan/style/linestyle.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/icon.h"
#include "kestan/style/linestyleschema.h"

namespace vorrel::kestan {

template class SchemaT<LineStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<LineStyle>;

namespace {

const LineStyleSchema& Fields() { return LineStyleSchema::GetSingleton(); }

RefPtr<LineStyle> s_default_line_style;

} // namespace

LineStyleSchema::LineStyleSchema()
    : SchemaT("LineStyle", &ColorStyle::GetClassSchema(), Namespace::kKml) {
  width.SetDefault(1.0F);
  physicalWidth.SetDefault(0.0F);
  outerColor.SetDefault(Color32(0));
  outerWidth.SetDefault(0.0F);
  repeat.SetDefault(0.0F);
  labelVisibility.SetDefault(false);
}

const Schema& LineStyle::GetClassSchema() { return LineStyleSchema::GetSingleton(); }

void LineStyle::Initialize() {
  s_default_line_style = new (HeapManager::GetStaticHeap()) LineStyle(KmlId(), QString());
}

void LineStyle::Shutdown() { s_default_line_style.reset(); }

LineStyle* LineStyle::GetDefaultLineStyle() { return s_default_line_style.get(); }

LineStyle::LineStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : ColorStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

LineStyle::~LineStyle() { NotifyPreDelete(); }

void LineStyle::SetWidth(float width) { Fields().width.CheckSet(*this, width, specified_); }

void LineStyle::SetPhysicalWidth(float metres) {
  Fields().physicalWidth.CheckSet(*this, metres, specified_);
}

void LineStyle::SetOuterColor(const Color32& color) {
  Fields().outerColor.CheckSet(*this, color, specified_);
}

void LineStyle::SetOuterWidth(float part) { Fields().outerWidth.CheckSet(*this, part, specified_); }

Icon* LineStyle::GetIcon() const {
  return icon_ && !icon_->GetUrl().isEmpty() ? icon_.get() : nullptr;
}

void LineStyle::SetIcon(Icon* icon) { Fields().icon.CheckSet(*this, icon, specified_); }

void LineStyle::SetRepeat(float repeat) { Fields().repeat.CheckSet(*this, repeat, specified_); }

void LineStyle::SetLabelVisibility(bool visible) {
  Fields().labelVisibility.CheckSet(*this, visible, specified_);
}

bool LineStyle::operator==(const LineStyle& other) const {
  return HasEqualColors(other) && width_ == other.width_ &&
         physicalWidth_ == other.physicalWidth_ && outerColor_ == other.outerColor_ &&
         outerWidth_ == other.outerWidth_ && icon_ == other.icon_ && repeat_ == other.repeat_;
}

} // namespace vorrel::kestan
