#include "kestan/style/polystyle.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/polystyleschema.h"

namespace vorrel::kestan {

template class SchemaT<PolyStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<PolyStyle>;

namespace {

const PolyStyleSchema& Fields() { return PolyStyleSchema::GetSingleton(); }

} // namespace

PolyStyleSchema::PolyStyleSchema()
    : SchemaT("PolyStyle", &ColorStyle::GetClassSchema(), Namespace::kKml) {
  fill.SetDefault(true);
  outline.SetDefault(true);
}

const Schema& PolyStyle::GetClassSchema() { return PolyStyleSchema::GetSingleton(); }

PolyStyle::PolyStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : ColorStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

PolyStyle::~PolyStyle() { NotifyPreDelete(); }

void PolyStyle::SetFill(bool fill) { Fields().fill.CheckSet(*this, fill, specified_); }

void PolyStyle::SetOutline(bool outline) { Fields().outline.CheckSet(*this, outline, specified_); }

bool PolyStyle::operator==(const PolyStyle& other) const {
  return HasEqualColors(other) && fill_ == other.fill_ && outline_ == other.outline_;
}

} // namespace vorrel::kestan
