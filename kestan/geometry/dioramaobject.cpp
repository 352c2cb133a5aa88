#include "kestan/geometry/dioramaobject.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/dioramaobjectschema.h"
#include "kestan/geometry/geometryvisitor.h"

namespace vorrel::kestan {

template class SchemaT<DioramaObject, NoInstancePolicy, NoDerivedPolicy>;

// No instances through the schema: nothing of the object is written, so an element of this name
// in a document has to stay as it is.
DioramaObjectSchema::DioramaObjectSchema()
    : SchemaT("DioramaObject", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& DioramaObject::GetClassSchema() { return DioramaObjectSchema::GetSingleton(); }

DioramaObject::DioramaObject(const KmlId& id, const QString& baseUrl)
    : DioramaObject(nullptr, id, baseUrl) {}

DioramaObject::DioramaObject(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : Geometry(GetClassSchema(), id, baseUrl) {
  SetAccess(0);
  Complete(feature);
}

DioramaObject::~DioramaObject() { NotifyPreDelete(); }

void DioramaObject::WriteKml(WriteState&) const {}

void DioramaObject::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void DioramaObject::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

void DioramaObject::SetAltitudes(const double*, int) {}

void DioramaObject::GetAltitudes(mmvector<double>&) const {}

void DioramaObject::SetAltitude(double) {}

const Vec3<double>* DioramaObject::GetCoords(int& count) const {
  count = 0;
  return nullptr;
}

void DioramaObject::NotifyCoordsChanged() {}

} // namespace vorrel::kestan
