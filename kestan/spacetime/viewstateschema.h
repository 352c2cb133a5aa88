#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/viewstate.h"

namespace vorrel::kestan {

class KESTAN_EXPORT RenderStateSchema final
    : public SchemaT<RenderState, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum options_; // the field refers to it, so that it comes first

public:
  RenderStateSchema();

  EnumField name{*this, "name", options_, 0, OffsetOf(&RenderState::name_), Field::kAttribute};
  SimpleField<bool> enabled{*this, "enabled", OffsetOf(&RenderState::enabled_), Field::kAttribute};
};

class KESTAN_EXPORT ViewStateSchema final
    : public SchemaT<ViewState, NewInstancePolicy, NoDerivedPolicy> {
public:
  ViewStateSchema();

  ObjArrayField<RenderState> renderStates{*this, QString(), RenderState::GetClassSchema(),
                                          OffsetOf(&ViewState::renderStates_)};
};

extern template class SchemaT<RenderState, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<ViewState, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
