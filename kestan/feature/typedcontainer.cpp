#include "kestan/feature/typedcontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeaturecontainer.h"
#include "kestan/feature/document.h"
#include "kestan/feature/geometrycontainer.h"
#include "kestan/feature/linearringcontainer.h"
#include "kestan/feature/styleselectorcontainer.h"
#include "kestan/feature/typedcontainerschema.h"
#include "kestan/geometry/multigeometry.h" // the lists
#include "kestan/geometry/polygon.h"
#include "kestan/style/styleselector.h"

#include <functional>
#include <stdexcept>

namespace vorrel::kestan {

namespace {

/// What a class calls the operations on its list.
template <class Parent> struct List;

template <> struct List<AbstractFolder> {
  static constexpr const char* kContainer = "AbstractFeatureContainer";
  static constexpr auto kAdd = &AbstractFolder::AddChild;
  static constexpr bool (AbstractFolder::*kRemove)(AbstractFeature&) = &AbstractFolder::RemChild;
  static constexpr auto kInsert = &AbstractFolder::InsertChild;
  static constexpr auto kFind = &AbstractFolder::FindChild;
  static constexpr auto kGet = &AbstractFolder::GetChild;
  static constexpr auto kCount = &AbstractFolder::GetChildCount;
};

template <> struct List<MultiGeometry> {
  static constexpr const char* kContainer = "GeometryContainer";
  static constexpr auto kAdd = &MultiGeometry::AddGeometry;
  static constexpr bool (MultiGeometry::*kRemove)(Geometry&) = &MultiGeometry::RemGeometry;
  static constexpr auto kInsert = &MultiGeometry::InsertGeometry;
  static constexpr auto kFind = &MultiGeometry::FindGeometry;
  static constexpr auto kGet = &MultiGeometry::GetGeometry;
  static constexpr auto kCount = &MultiGeometry::GetGeometryCount;
};

template <> struct List<Polygon> {
  static constexpr const char* kContainer = "LinearRingContainer";
  static bool kAdd(Polygon& polygon, LinearRing& ring) { return polygon.AddInnerBoundary(&ring); }
  static bool kRemove(Polygon& polygon, LinearRing& ring) {
    return polygon.RemInnerBoundary(&ring);
  }
  static bool kInsert(Polygon& polygon, int index, LinearRing& ring) {
    return polygon.InsertInnerBoundary(index, &ring);
  }
  static int kFind(const Polygon& polygon, const LinearRing& ring) {
    return polygon.FindInnerBoundary(&ring);
  }
  static LinearRing* kGet(const Polygon& polygon, int index) {
    return polygon.GetInnerBoundaries().at(static_cast<std::size_t>(index)).get();
  }
  static int kCount(const Polygon& polygon) {
    return static_cast<int>(polygon.GetInnerBoundaries().size());
  }
};

template <> struct List<Document> {
  static constexpr const char* kContainer = "StyleSelectorContainer";
  static constexpr auto kAdd = &Document::AddStyleSelector;
  static constexpr auto kRemove = &Document::RemStyleSelector;
  static constexpr auto kInsert = &Document::InsertStyleSelector;
  static constexpr auto kFind = &Document::FindStyleSelector;
  static constexpr auto kGet = &Document::GetStyleSelector;
  static constexpr auto kCount = &Document::GetStyleSelectorCount;
};

} // namespace

template <class Parent, class Element>
TypedContainerSchema<Parent, Element>::TypedContainerSchema()
    : SchemaT<TypedContainer<Parent, Element>, NewInstancePolicy, NoDerivedPolicy>(
          List<Parent>::kContainer, &SchemaObjectContainer::GetClassSchema(), Namespace::kKml) {}

template <class Parent, class Element>
const Schema& TypedContainer<Parent, Element>::GetClassSchema() {
  return ClassSchema::GetSingleton();
}

template <class Parent, class Element>
TypedContainer<Parent, Element>::TypedContainer(const KmlId& id, const QString& baseUrl)
    : SchemaObjectContainer(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

template <class Parent, class Element> TypedContainer<Parent, Element>::~TypedContainer() {
  NotifyPreDelete();
}

template <class Parent, class Element>
Parent* TypedContainer<Parent, Element>::TypedParent() const {
  return static_cast<Parent*>(GetParent());
}

template <class Parent, class Element>
Element* TypedContainer<Parent, Element>::Cast(SchemaObject* object) const {
  const bool fits = GetParent() && object && object->isOfType(Element::GetClassSchema());
  return fits ? static_cast<Element*>(object) : nullptr;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::SetParent(SchemaObject* parent) {
  if (!parent || !parent->isOfType(Parent::GetClassSchema()))
    return false;
  StoreParent(*parent);
  return true;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::add(SchemaObject* object) {
  Element* const element = Cast(object);
  if (element)
    std::invoke(List<Parent>::kAdd, *TypedParent(), *element);
  return element != nullptr;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::rem(SchemaObject* object) {
  Element* const element = Cast(object);
  if (element)
    std::invoke(List<Parent>::kRemove, *TypedParent(), *element);
  return element != nullptr;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::insert(int index, SchemaObject* object) {
  Element* const element = Cast(object);
  if (element)
    std::invoke(List<Parent>::kInsert, *TypedParent(), index, *element);
  return element != nullptr;
}

template <class Parent, class Element>
int TypedContainer<Parent, Element>::find(SchemaObject* object) const {
  const Element* const element = Cast(object);
  return element ? std::invoke(List<Parent>::kFind, *TypedParent(), *element) : -1;
}

template <class Parent, class Element>
SchemaObject* TypedContainer<Parent, Element>::get(int index) const {
  if (!GetParent())
    throw std::out_of_range("a container without a parent is empty");
  return std::invoke(List<Parent>::kGet, *TypedParent(), index);
}

template <class Parent, class Element> int TypedContainer<Parent, Element>::GetLength() const {
  return GetParent() ? std::invoke(List<Parent>::kCount, *TypedParent()) : 0;
}

template class SchemaT<AbstractFeatureContainer, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<GeometryContainer, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<LinearRingContainer, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<StyleSelectorContainer, NewInstancePolicy, NoDerivedPolicy>;
template class TypedContainer<AbstractFolder, AbstractFeature>;
template class TypedContainer<MultiGeometry, Geometry>;
template class TypedContainer<Polygon, LinearRing>;
template class TypedContainer<Document, StyleSelector>;

} // namespace vorrel::kestan
