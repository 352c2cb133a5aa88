#include "kestan/tour/tourprimitive.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/tour/tour.h"
#include "kestan/tour/tourprimitiveschema.h"
#include "kestan/tour/tourprimitivevisitor.h"

namespace vorrel::kestan {

template class SchemaT<TourPrimitive, NoInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<TourPrimitive>;

TourPrimitiveSchema::TourPrimitiveSchema() : SchemaT("TourPrimitive", nullptr, Namespace::kExt) {
  duration.SetDefault(0.0).SetMin(0.0);
}

const Schema& TourPrimitive::GetClassSchema() { return TourPrimitiveSchema::GetSingleton(); }

TourPrimitive::TourPrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

TourPrimitive::~TourPrimitive() = default;

Tour* TourPrimitive::GetParent() const {
  SchemaObject* const owner = GetOwner(0);
  return owner && owner->isOfType(Tour::GetClassSchema()) ? static_cast<Tour*>(owner) : nullptr;
}

void TourPrimitive::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void TourPrimitive::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

void TourPrimitive::SetDuration(double seconds) {
  TourPrimitiveSchema::GetSingleton().duration.CheckSet(*this, seconds);
}

} // namespace vorrel::kestan
