#include "kestan/style/iconstackstyle.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/iconstackstyleschema.h"

namespace vorrel::kestan {

template class SchemaT<IconStackStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<IconStackStyle>;

IconStackStyleSchema::IconStackStyleSchema()
    : SchemaT("IconStackStyle", nullptr, Namespace::kExt) {}

const Schema& IconStackStyle::GetClassSchema() { return IconStackStyleSchema::GetSingleton(); }

IconStackStyle::IconStackStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : SubStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

IconStackStyle::~IconStackStyle() { NotifyPreDelete(); }

void IconStackStyle::AddIconStyle(IconStyle& style) {
  IconStackStyleSchema::GetSingleton().iconStyles.add(*this, &style);
}

bool IconStackStyle::UnspecifyRedundantFields(const IconStackStyle&) { return specified_ == 0; }

} // namespace vorrel::kestan
