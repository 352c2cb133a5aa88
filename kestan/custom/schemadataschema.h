#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/schemat.h"
#include "kestan/custom/schemadata.h"
#include "kestan/custom/simplearraydata.h"
#include "kestan/custom/simpledata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SchemaDataSchema final
    : public SchemaT<SchemaData, NewInstancePolicy, NoDerivedPolicy> {
public:
  SchemaDataSchema();

  ObjUrlField<CustomSchema> schemaUrl{*this,
                                      "schemaUrl",
                                      OffsetOf(&SchemaData::schemaUrl_),
                                      Field::kAttribute,
                                      0,
                                      OffsetOf(&SchemaData::schema_)};
  ObjArrayField<SimpleData> simpleDatas{*this, QString(), SimpleData::GetClassSchema(),
                                        OffsetOf(&SchemaData::simpleDatas_)};
  ObjArrayField<SimpleArrayData> simpleArrayDatas{*this, QString(),
                                                  SimpleArrayData::GetClassSchema(),
                                                  OffsetOf(&SchemaData::simpleArrayDatas_)};
};

extern template class SchemaT<SchemaData, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
