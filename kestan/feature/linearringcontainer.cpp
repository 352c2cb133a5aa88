#include "kestan/feature/linearringcontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/containerschemas.h"
#include "kestan/feature/typedcontainer_impl.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/polygon.h" // the list

namespace vorrel::kestan {

template class SchemaT<LinearRingContainer, NewInstancePolicy, NoDerivedPolicy>;
template class TypedContainer<Polygon, LinearRing>;

LinearRingContainerSchema::LinearRingContainerSchema()
    : SchemaT("LinearRingContainer", &SchemaObjectContainer::GetClassSchema(), Namespace::kKml) {}

const Schema& LinearRingContainer::GetClassSchema() {
  return LinearRingContainerSchema::GetSingleton();
}

LinearRingContainer::LinearRingContainer(const KmlId& id, const QString& baseUrl)
    : TypedContainer(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

LinearRingContainer::~LinearRingContainer() { NotifyPreDelete(); }

void LinearRingContainer::Add(Polygon& parent, LinearRing& element) const {
  parent.AddInnerBoundary(&element);
}

void LinearRingContainer::Remove(Polygon& parent, LinearRing& element) const {
  parent.RemInnerBoundary(&element);
}

void LinearRingContainer::Insert(Polygon& parent, int index, LinearRing& element) const {
  parent.InsertInnerBoundary(index, &element);
}

int LinearRingContainer::Find(const Polygon& parent, const LinearRing& element) const {
  return parent.FindInnerBoundary(&element);
}

LinearRing* LinearRingContainer::Get(const Polygon& parent, int index) const {
  return parent.GetInnerBoundaries()[static_cast<std::size_t>(index)].get();
}

int LinearRingContainer::Count(const Polygon& parent) const {
  return static_cast<int>(parent.GetInnerBoundaries().size());
}

} // namespace vorrel::kestan
