#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/folder.h"

namespace vorrel::kestan {

class KESTAN_EXPORT FolderSchema final
    : public SchemaT<Folder, NewInstancePolicy, NoDerivedPolicy> {
public:
  FolderSchema();
};

extern template class SchemaT<Folder, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
