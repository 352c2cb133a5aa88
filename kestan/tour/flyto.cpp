#include "kestan/tour/flyto.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/tour/flytoschema.h"
#include "kestan/tour/tourprimitivevisitor.h"

namespace vorrel::kestan {

template class SchemaT<FlyTo, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const FlyToSchema& Fields() { return FlyToSchema::GetSingleton(); }

} // namespace

FlyToSchema::FlyToSchema()
    : SchemaT("FlyTo", &TourPrimitive::GetClassSchema(), Namespace::kExt),
      modes_({{kFlyToBounce, QStringLiteral("bounce")}, {kFlyToSmooth, QStringLiteral("smooth")}},
             false) {}

const Schema& FlyTo::GetClassSchema() { return FlyToSchema::GetSingleton(); }

FlyTo::FlyTo(const KmlId& id, const QString& baseUrl)
    : TourPrimitive(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

FlyTo::~FlyTo() { NotifyPreDelete(); }

void FlyTo::setView(AbstractView* view) { Fields().view.CheckSet(*this, view); }

void FlyTo::SetInterpMode(FlyToMode mode) { Fields().flyToMode.CheckSet(*this, mode); }

void FlyTo::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void FlyTo::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

} // namespace vorrel::kestan
