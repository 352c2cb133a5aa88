#pragma once

#include "kestan/core/datetimefield.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/feature/linksnippet.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkControlSchema final
    : public SchemaT<NetworkLinkControl, NewInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkControlSchema();

  SimpleField<float> minRefreshPeriod{
      *this, "minRefreshPeriod", OffsetOf(&NetworkLinkControl::minRefreshPeriod_), Field::kElement};
  StrField cookie{*this, "cookie", OffsetOf(&NetworkLinkControl::cookie_), Field::kElement};
  StrField message{*this, "message", OffsetOf(&NetworkLinkControl::message_), Field::kElement};
  StrField linkName{*this, "linkName", OffsetOf(&NetworkLinkControl::linkName_), Field::kElement};
  ObjField<LinkSnippet> linkSnippet{*this, QString(), LinkSnippet::GetClassSchema(),
                                    OffsetOf(&NetworkLinkControl::linkSnippet_)};
  StrField linkDescription{*this, "linkDescription",
                           OffsetOf(&NetworkLinkControl::linkDescription_), Field::kElement};
  DateTimeField expires{*this, "expires", OffsetOf(&NetworkLinkControl::expires_), Field::kElement};
  ObjArrayField<Update> updates; // initialised by the constructor: its class lies above this folder
  ObjField<AbstractView> abstractView{*this, QString(), AbstractView::GetClassSchema(),
                                      OffsetOf(&NetworkLinkControl::abstractView_)};
  SimpleField<float> maxSessionLength{
      *this, "maxSessionLength", OffsetOf(&NetworkLinkControl::maxSessionLength_), Field::kElement};
};

extern template class SchemaT<NetworkLinkControl, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
