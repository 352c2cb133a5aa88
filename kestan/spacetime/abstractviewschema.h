#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractViewSchema final
    : public SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractViewSchema();

  SimpleField<double> fovX{*this, "horizFov", OffsetOf(&AbstractView::fovX_), Field::kElement,
                           Field::kExtNamespace};
  ObjField<TimePrimitive> timePrimitive{*this, QString(), TimePrimitive::GetClassSchema(),
                                        OffsetOf(&AbstractView::timePrimitive_)};
  ObjField<ViewState> viewState{*this, QString(), ViewState::GetClassSchema(),
                                OffsetOf(&AbstractView::viewState_)};
};

extern template class SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
