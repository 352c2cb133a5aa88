#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/custom/arraydata.h"
#include "kestan/custom/data.h"
#include "kestan/custom/extendeddata.h"
#include "kestan/custom/schemadata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ExtendedDataSchema final
    : public SchemaT<ExtendedData, NewInstancePolicy, NoDerivedPolicy> {
public:
  ExtendedDataSchema();

  ObjArrayField<Data> datas{*this, QString(), Data::GetClassSchema(),
                            OffsetOf(&ExtendedData::datas_)};
  ObjArrayField<SchemaData> schemaDatas{*this, QString(), SchemaData::GetClassSchema(),
                                        OffsetOf(&ExtendedData::schemaDatas_)};
  ObjArrayField<ArrayData> arrayDatas{*this, QString(), ArrayData::GetClassSchema(),
                                      OffsetOf(&ExtendedData::arrayDatas_)};
};

extern template class SchemaT<ExtendedData, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
