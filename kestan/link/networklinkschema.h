#pragma once

#include "kestan/core/enumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/link/link.h"
#include "kestan/link/networklink.h"
#include "kestan/link/networklinkurl.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkSchema final
    : public SchemaT<NetworkLink, NewInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkSchema();

  SimpleField<bool> refreshVisibility{*this, "refreshVisibility",
                                      OffsetOf(&NetworkLink::refreshVisibility_), Field::kElement};
  SimpleField<bool> flyToView{*this, "flyToView", OffsetOf(&NetworkLink::flyToView_),
                              Field::kElement};
  ObjField<NetworkLink::Url> url{*this, QString(), NetworkLink::Url::GetClassSchema(),
                                 OffsetOf(&NetworkLink::url_)};
  ObjField<Link> link{*this, QString(), Link::GetClassSchema(), OffsetOf(&NetworkLink::link_)};
  SimpleField<int> refreshPeriod{*this, "refreshPeriod", OffsetOf(&NetworkLink::refreshPeriod_),
                                 Field::kElement, Field::kNoWrite | Field::kNoCopy};
  SimpleField<bool> forceFetch{*this, "forceFetch", OffsetOf(&NetworkLink::forceFetch_),
                               Field::kHidden};
  EnumField initialRefreshMode{*this,
                               "initialRefreshMode",
                               InitialRefreshModes(),
                               NetworkLink::kRefreshOnVisible,
                               OffsetOf(&NetworkLink::initialRefreshMode_),
                               Field::kElement,
                               Field::kNoWrite};
  EnumField rootMode{*this,
                     "rootMode",
                     RootModes(),
                     NetworkLink::kRootAutoPrune,
                     OffsetOf(&NetworkLink::rootMode_),
                     Field::kElement,
                     Field::kNoWrite};
  PhantomField fetchState{*this, "fetchState"}; ///< Fires when the fetch state changes.

private:
  static Enum& InitialRefreshModes();
  static Enum& RootModes();
};

extern template class SchemaT<NetworkLink, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
