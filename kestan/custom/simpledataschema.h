#pragma once

#include "kestan/core/cdatafield.h"
#include "kestan/core/schemat.h"
#include "kestan/custom/simpledata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractSimpleDataSchema final
    : public SchemaT<AbstractSimpleData, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractSimpleDataSchema();

  StrField name{*this, "name", OffsetOf(&AbstractSimpleData::name_), Field::kAttribute};
};

extern template class SchemaT<AbstractSimpleData, NoInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT SimpleDataSchema final
    : public SchemaT<SimpleData, NewInstancePolicy, NoDerivedPolicy> {
public:
  SimpleDataSchema();

  CdataField value{*this, QString(), OffsetOf(&SimpleData::value_), Field::kElement};
};

extern template class SchemaT<SimpleData, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
