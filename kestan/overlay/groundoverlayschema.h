#pragma once

#include "kestan/core/schemat.h"
#include "kestan/overlay/groundoverlay.h"

namespace vorrel::kestan {

class KESTAN_EXPORT GroundOverlaySchema final
    : public SchemaT<GroundOverlay, NoInstancePolicy, NoDerivedPolicy> {
public:
  GroundOverlaySchema();
};

extern template class SchemaT<GroundOverlay, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
