#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/update/update.h"

namespace vorrel::kestan {

class KESTAN_EXPORT UpdateSchema final
    : public SchemaT<Update, NewInstancePolicy, NoDerivedPolicy> {
public:
  UpdateSchema();

  HrefStrField targetHref{*this,
                          "targetHref",
                          OffsetOf(&Update::targetHref_),
                          Field::kElement,
                          0,
                          OffsetOf(&Update::rawTargetHref_)};
  /// Lets any class be named in the content.
  ObjArrayField<SchemaObject> objects{*this, QString(), SchemaObject::GetClassSchema(),
                                      OffsetOf(&Update::objects_)};
};

extern template class SchemaT<Update, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
