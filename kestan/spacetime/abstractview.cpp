#include "kestan/spacetime/abstractview.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractviewschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<AbstractView>;

namespace {

const AbstractViewSchema& Fields() { return AbstractViewSchema::GetSingleton(); }

} // namespace

AbstractViewSchema::AbstractViewSchema() : SchemaT("AbstractView", nullptr, Namespace::kKml) {
  fovX.SetDefault(-1.0);
}

const Schema& AbstractView::GetClassSchema() { return AbstractViewSchema::GetSingleton(); }

AbstractView::AbstractView(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractView::~AbstractView() = default;

void AbstractView::SetFovX(double degrees) { Fields().fovX.CheckSet(*this, degrees); }

void AbstractView::SetTimePrimitive(TimePrimitive* time) {
  Fields().timePrimitive.CheckSet(*this, time);
}

void AbstractView::SetViewState(ViewState* state) { Fields().viewState.CheckSet(*this, state); }

} // namespace vorrel::kestan
