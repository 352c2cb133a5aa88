#pragma once

#include "kestan/core/hinttargets.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/feature/kml.h"

namespace vorrel::kestan {

/// The table of the root, which knows the hint targets.
class KESTAN_EXPORT KmlSchema final : public SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy>,
                                      public HintTargets {
public:
  KmlSchema();

  // Child objects are initialised by the constructor, since their classes lie above this folder.
  ObjField<TarrowLink> link;
  ObjField<NetworkLinkControl> control;
  ObjField<AbstractFeature> feature;
  ObjField<Theme> theme;
  StrField source{*this, "DocumentSource", OffsetOf(&Kml::source_), Field::kElement};
  StrField hint{*this, "hint", OffsetOf(&Kml::hint_), Field::kAttribute};
};

extern template class SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
