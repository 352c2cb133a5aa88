#pragma once

#include "kestan/core/cdatafield.h"
#include "kestan/core/schemat.h"
#include "kestan/custom/data.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractDataSchema final
    : public SchemaT<AbstractData, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractDataSchema();

  StrField name{*this, "name", OffsetOf(&AbstractData::name_), Field::kAttribute};
  CdataField displayName{*this, "displayName", OffsetOf(&AbstractData::displayName_),
                         Field::kElement};
};

extern template class SchemaT<AbstractData, NoInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT DataSchema final : public SchemaT<Data, NewInstancePolicy, NoDerivedPolicy> {
public:
  DataSchema();

  CdataField value{*this, "value", OffsetOf(&Data::value_), Field::kElement};
};

extern template class SchemaT<Data, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
