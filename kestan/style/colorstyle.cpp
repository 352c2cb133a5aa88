#include "kestan/style/colorstyle.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/style/colorstyleschema.h"

namespace vorrel::kestan {

template class SchemaT<ColorStyle, NoInstancePolicy, NoDerivedPolicy>;

namespace {

const ColorStyleSchema& Fields() { return ColorStyleSchema::GetSingleton(); }

} // namespace

ColorStyleSchema::ColorStyleSchema() : SchemaT("ColorStyle", nullptr, Namespace::kKml) {
  color.SetDefault(Color32());
  antialias.SetDefault(true);
}

const Schema& ColorStyle::GetClassSchema() { return ColorStyleSchema::GetSingleton(); }

ColorStyle::ColorStyle(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SubStyle(schema, id, baseUrl) {}

void ColorStyle::setColor(const Color32& color) {
  Fields().color.CheckSet(*this, color, specified_);
}

void ColorStyle::SetColorMode(ColorMode mode) {
  Fields().colorMode.CheckSet(*this, mode, specified_);
}

void ColorStyle::SetColorMode(const QString& name) {
  int mode = 0;
  if (Fields().colorMode.GetEnum().GetEnum(name, mode))
    SetColorMode(static_cast<ColorMode>(mode));
}

void ColorStyle::SetAntialias(bool antialias) {
  Fields().antialias.CheckSet(*this, antialias, specified_);
}

bool ColorStyle::UnspecifyRedundantFields(const ColorStyle& other) {
  if (&other == this)
    return true;
  unsigned mask = GetFieldsSpecified();
  for (const Field* field : GetSchema().GetSerializedFields()) {
    if ((mask & field->GetMaskBit()) != 0 && field->equals(*this, other))
      mask &= ~field->GetMaskBit();
  }
  SetSpecified(mask);
  return mask == 0;
}

bool ColorStyle::HasEqualColors(const ColorStyle& other) const {
  return color_ == other.color_ && colorMode_ == other.colorMode_ && antialias_ == other.antialias_;
}

} // namespace vorrel::kestan
