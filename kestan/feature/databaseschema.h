#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/feature/database.h"

namespace vorrel::kestan {

class KESTAN_EXPORT DatabaseSchema final
    : public SchemaT<Database, NoInstancePolicy, NoDerivedPolicy> {
public:
  DatabaseSchema();

  bool IsAbstract() const override { return false; }

  SimpleField<unsigned int> status{*this, "status", OffsetOf(&Database::status_), Field::kHidden,
                                   Field::kNoWrite};
  SimpleField<QString> url{*this, "url", OffsetOf(&Database::databaseUrl_), Field::kElement,
                           Field::kNoWrite};
  SimpleField<int> drawOrder{*this, "drawOrder", OffsetOf(&Database::drawOrder_), Field::kElement,
                             Field::kNoWrite};
};

extern template class SchemaT<Database, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
