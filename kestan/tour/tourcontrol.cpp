#include "kestan/tour/tourcontrol.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/tour/tourcontrolschema.h"
#include "kestan/tour/tourprimitivevisitor.h"

namespace vorrel::kestan {

template class SchemaT<TourControl, NewInstancePolicy, NoDerivedPolicy>;

TourControlSchema::TourControlSchema()
    : SchemaT("TourControl", &TourPrimitive::GetClassSchema(), Namespace::kExt),
      actions_({{kTourPause, QStringLiteral("pause")}}, false) {}

const Schema& TourControl::GetClassSchema() { return TourControlSchema::GetSingleton(); }

TourControl::TourControl(const KmlId& id, const QString& baseUrl)
    : TourPrimitive(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

TourControl::~TourControl() { NotifyPreDelete(); }

void TourControl::SetAction(TourControlAction action) {
  TourControlSchema::GetSingleton().playMode.CheckSet(*this, action);
}

void TourControl::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void TourControl::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

} // namespace vorrel::kestan
