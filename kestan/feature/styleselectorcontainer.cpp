#include "kestan/feature/styleselectorcontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/containerschemas.h"
#include "kestan/feature/document.h"
#include "kestan/feature/typedcontainer_impl.h"
#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

template class SchemaT<StyleSelectorContainer, NewInstancePolicy, NoDerivedPolicy>;
template class TypedContainer<Document, StyleSelector>;

StyleSelectorContainerSchema::StyleSelectorContainerSchema()
    : SchemaT("StyleSelectorContainer", &SchemaObjectContainer::GetClassSchema(), Namespace::kKml) {
}

const Schema& StyleSelectorContainer::GetClassSchema() {
  return StyleSelectorContainerSchema::GetSingleton();
}

StyleSelectorContainer::StyleSelectorContainer(const KmlId& id, const QString& baseUrl)
    : TypedContainer(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

StyleSelectorContainer::~StyleSelectorContainer() { NotifyPreDelete(); }

void StyleSelectorContainer::Add(Document& parent, StyleSelector& element) const {
  parent.AddStyleSelector(element);
}

void StyleSelectorContainer::Remove(Document& parent, StyleSelector& element) const {
  parent.RemStyleSelector(element);
}

void StyleSelectorContainer::Insert(Document& parent, int index, StyleSelector& element) const {
  parent.InsertStyleSelector(index, element);
}

int StyleSelectorContainer::Find(const Document& parent, const StyleSelector& element) const {
  return parent.FindStyleSelector(element);
}

StyleSelector* StyleSelectorContainer::Get(const Document& parent, int index) const {
  return parent.GetStyleSelector(index);
}

int StyleSelectorContainer::Count(const Document& parent) const {
  return parent.GetStyleSelectorCount();
}

} // namespace vorrel::kestan
