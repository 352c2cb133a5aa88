#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/abstractfeaturecontainer.h"
#include "kestan/feature/geometrycontainer.h"
#include "kestan/feature/linearringcontainer.h"
#include "kestan/feature/schemaobjectcontainer.h"
#include "kestan/feature/styleselectorcontainer.h"

namespace vorrel::kestan {

// The containers are for scripts, not for documents: none of them has a field.

class KESTAN_EXPORT SchemaObjectContainerSchema final
    : public SchemaT<SchemaObjectContainer, NoInstancePolicy, NoDerivedPolicy> {
public:
  SchemaObjectContainerSchema();
};

extern template class SchemaT<SchemaObjectContainer, NoInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT AbstractFeatureContainerSchema final
    : public SchemaT<AbstractFeatureContainer, NewInstancePolicy, NoDerivedPolicy> {
public:
  AbstractFeatureContainerSchema();
};

extern template class SchemaT<AbstractFeatureContainer, NewInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT GeometryContainerSchema final
    : public SchemaT<GeometryContainer, NewInstancePolicy, NoDerivedPolicy> {
public:
  GeometryContainerSchema();
};

extern template class SchemaT<GeometryContainer, NewInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT LinearRingContainerSchema final
    : public SchemaT<LinearRingContainer, NewInstancePolicy, NoDerivedPolicy> {
public:
  LinearRingContainerSchema();
};

extern template class SchemaT<LinearRingContainer, NewInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT StyleSelectorContainerSchema final
    : public SchemaT<StyleSelectorContainer, NewInstancePolicy, NoDerivedPolicy> {
public:
  StyleSelectorContainerSchema();
};

extern template class SchemaT<StyleSelectorContainer, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
