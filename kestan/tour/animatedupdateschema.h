#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/tour/animatedupdate.h"
#include "kestan/update/update.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AnimatedUpdateSchema final
    : public SchemaT<AnimatedUpdate, NewInstancePolicy, NoDerivedPolicy> {
public:
  AnimatedUpdateSchema();

  ObjField<Update> update{*this, QString(), Update::GetClassSchema(),
                          OffsetOf(&AnimatedUpdate::update_)};
  SimpleField<double> delayedStart{*this, "delayedStart", OffsetOf(&AnimatedUpdate::delayedStart_),
                                   Field::kElement};
};

extern template class SchemaT<AnimatedUpdate, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
