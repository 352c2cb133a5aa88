#include "kestan/tour/wait.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/tour/tourprimitivevisitor.h"
#include "kestan/tour/waitschema.h"

namespace vorrel::kestan {

template class SchemaT<Wait, NewInstancePolicy, NoDerivedPolicy>;

WaitSchema::WaitSchema() : SchemaT("Wait", &TourPrimitive::GetClassSchema(), Namespace::kExt) {}

const Schema& Wait::GetClassSchema() { return WaitSchema::GetSingleton(); }

Wait::Wait(const KmlId& id, const QString& baseUrl) : TourPrimitive(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Wait::~Wait() { NotifyPreDelete(); }

void Wait::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void Wait::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

} // namespace vorrel::kestan
