#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/document.h"

namespace vorrel::kestan {

class KESTAN_EXPORT DocumentSchema final
    : public SchemaT<Document, NewInstancePolicy, NoDerivedPolicy> {
public:
  DocumentSchema();

  // Initialised by the constructor, since the classes lie above this folder.
  ObjArrayField<StyleSelector> styleSelectors;
  ObjArrayField<CustomSchema> schemas;
};

extern template class SchemaT<Document, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
