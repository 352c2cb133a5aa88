#include "kestan/style/styleselector.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/objurlfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/styleselectorschema.h"

namespace vorrel::kestan {

template class SchemaT<StyleSelector, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<StyleSelector>;
template class ObjArrayField<StyleSelector>;
template class ObjUrlField<StyleSelector>;

std::atomic<std::uint32_t> StyleSelector::s_get_selected_cycle_counter{0};

StyleSelectorSchema::StyleSelectorSchema() : SchemaT("StyleSelector", nullptr, Namespace::kKml) {}

const Schema& StyleSelector::GetClassSchema() { return StyleSelectorSchema::GetSingleton(); }

StyleSelector::StyleSelector(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

StyleSelector::~StyleSelector() = default;

} // namespace vorrel::kestan
