#pragma once

#include "kestan/core/schemat.h"
#include "kestan/overlay/screenoverlay.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ScreenOverlaySchema final
    : public SchemaT<ScreenOverlay, NoInstancePolicy, NoDerivedPolicy> {
public:
  ScreenOverlaySchema();
};

extern template class SchemaT<ScreenOverlay, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
