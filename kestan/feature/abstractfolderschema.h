#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/abstractfolder.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractFolderSchema final
    : public SchemaT<AbstractFolder, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractFolderSchema();

  ObjField<Icon> icon; // initialised by the constructor: its class lies above this folder
  ObjArrayField<AbstractFeature> children{*this, QString(), AbstractFeature::GetClassSchema(),
                                          OffsetOf(&AbstractFolder::children_)};
  PhantomField syncState{*this, "syncState"};
  PhantomField syncProgress{*this, "syncProgress"};
};

extern template class SchemaT<AbstractFolder, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
