#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/custom/arraydata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ArrayDataSchema final
    : public SchemaT<ArrayData, NewInstancePolicy, NoDerivedPolicy> {
public:
  ArrayDataSchema();

  SimpleArrayField<QString> value{*this, "value",
                                  OffsetOf(&ArrayData::samples_) + Samples::GetValuesOffset(),
                                  Field::kElement, Field::kExtNamespace};
};

extern template class SchemaT<ArrayData, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
