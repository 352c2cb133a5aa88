#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/tour/flyto.h"

namespace vorrel::kestan {

class KESTAN_EXPORT FlyToSchema final : public SchemaT<FlyTo, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum modes_; // the field refers to it, so that it comes first

public:
  FlyToSchema();

  EnumField flyToMode{
      *this, "flyToMode", modes_, kFlyToBounce, OffsetOf(&FlyTo::flyToMode_), Field::kElement};
  ObjField<AbstractView> view{*this, QString(), AbstractView::GetClassSchema(),
                              OffsetOf(&FlyTo::view_)};
};

extern template class SchemaT<FlyTo, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
