#include "kestan/feature/abstractfeaturecontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/feature/containerschemas.h"
#include "kestan/feature/typedcontainer_impl.h"

namespace vorrel::kestan {

template class SchemaT<AbstractFeatureContainer, NewInstancePolicy, NoDerivedPolicy>;
template class TypedContainer<AbstractFolder, AbstractFeature>;

AbstractFeatureContainerSchema::AbstractFeatureContainerSchema()
    : SchemaT("AbstractFeatureContainer", &SchemaObjectContainer::GetClassSchema(),
              Namespace::kKml) {}

const Schema& AbstractFeatureContainer::GetClassSchema() {
  return AbstractFeatureContainerSchema::GetSingleton();
}

AbstractFeatureContainer::AbstractFeatureContainer(const KmlId& id, const QString& baseUrl)
    : TypedContainer(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

AbstractFeatureContainer::~AbstractFeatureContainer() { NotifyPreDelete(); }

void AbstractFeatureContainer::Add(AbstractFolder& parent, AbstractFeature& element) const {
  parent.AddChild(element);
}

void AbstractFeatureContainer::Remove(AbstractFolder& parent, AbstractFeature& element) const {
  parent.RemChild(element);
}

void AbstractFeatureContainer::Insert(AbstractFolder& parent, int index,
                                      AbstractFeature& element) const {
  parent.InsertChild(index, element);
}

int AbstractFeatureContainer::Find(const AbstractFolder& parent,
                                   const AbstractFeature& element) const {
  return parent.FindChild(element);
}

AbstractFeature* AbstractFeatureContainer::Get(const AbstractFolder& parent, int index) const {
  return parent.GetChild(index);
}

int AbstractFeatureContainer::Count(const AbstractFolder& parent) const {
  return parent.GetChildCount();
}

} // namespace vorrel::kestan
