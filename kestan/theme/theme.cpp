#include "kestan/theme/theme.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/theme/themeschema.h"

namespace vorrel::kestan {

template class SchemaT<Theme, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<Theme>;

ThemeSchema::ThemeSchema() : SchemaT("Theme", nullptr, Namespace::kKml) {}

const Schema& Theme::GetClassSchema() { return ThemeSchema::GetSingleton(); }

Theme::Theme(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

Theme::~Theme() = default;

} // namespace vorrel::kestan
