#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/link/tarrowlink.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TarrowLinkSchema final
    : public SchemaT<TarrowLink, NewInstancePolicy, NoDerivedPolicy> {
public:
  TarrowLinkSchema();

  StrField href{*this, "href", OffsetOf(&TarrowLink::href_), Field::kElement, Field::kKmlNamespace};
};

extern template class SchemaT<TarrowLink, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
