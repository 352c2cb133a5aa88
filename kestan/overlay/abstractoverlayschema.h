#pragma once

#include "kestan/core/schemat.h"
#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractOverlaySchema final
    : public SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractOverlaySchema();
};

extern template class SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
