#include "kestan/spacetime/abstractview.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractviewschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<AbstractView>;

AbstractViewSchema::AbstractViewSchema() : SchemaT("AbstractView", nullptr, Namespace::kKml) {}

const Schema& AbstractView::GetClassSchema() { return AbstractViewSchema::GetSingleton(); }

AbstractView::AbstractView(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractView::~AbstractView() = default;

} // namespace vorrel::kestan
