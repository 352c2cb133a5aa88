#include "kestan/feature/geometrycontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/containerschemas.h"
#include "kestan/feature/typedcontainer_impl.h"
#include "kestan/geometry/geometry.h"
#include "kestan/geometry/multigeometry.h" // the list

namespace vorrel::kestan {

template class SchemaT<GeometryContainer, NewInstancePolicy, NoDerivedPolicy>;
template class TypedContainer<MultiGeometry, Geometry>;

GeometryContainerSchema::GeometryContainerSchema()
    : SchemaT("GeometryContainer", &SchemaObjectContainer::GetClassSchema(), Namespace::kKml) {}

const Schema& GeometryContainer::GetClassSchema() {
  return GeometryContainerSchema::GetSingleton();
}

GeometryContainer::GeometryContainer(const KmlId& id, const QString& baseUrl)
    : TypedContainer(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

GeometryContainer::~GeometryContainer() { NotifyPreDelete(); }

void GeometryContainer::Add(MultiGeometry& parent, Geometry& element) const {
  parent.AddGeometry(element);
}

void GeometryContainer::Remove(MultiGeometry& parent, Geometry& element) const {
  parent.RemGeometry(element);
}

void GeometryContainer::Insert(MultiGeometry& parent, int index, Geometry& element) const {
  parent.InsertGeometry(index, element);
}

int GeometryContainer::Find(const MultiGeometry& parent, const Geometry& element) const {
  return parent.FindGeometry(element);
}

Geometry* GeometryContainer::Get(const MultiGeometry& parent, int index) const {
  return parent.GetGeometry(index);
}

int GeometryContainer::Count(const MultiGeometry& parent) const {
  return parent.GetGeometryCount();
}

} // namespace vorrel::kestan
