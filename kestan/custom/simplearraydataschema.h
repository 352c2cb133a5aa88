#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/custom/simplearraydata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SimpleArrayDataSchema final
    : public SchemaT<SimpleArrayData, NewInstancePolicy, NoDerivedPolicy> {
public:
  SimpleArrayDataSchema();

  SimpleArrayField<QString> value{*this, "value",
                                  OffsetOf(&SimpleArrayData::samples_) + Samples::GetValuesOffset(),
                                  Field::kElement, Field::kExtNamespace};
};

extern template class SchemaT<SimpleArrayData, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
