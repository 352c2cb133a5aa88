#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

// The containers are for scripts, not for documents: none of them has a field.

template <class Parent, class Element>
class KESTAN_EXPORT TypedContainerSchema final
    : public SchemaT<TypedContainer<Parent, Element>, NewInstancePolicy, NoDerivedPolicy> {
public:
  TypedContainerSchema();
};

} // namespace vorrel::kestan
