#pragma once

#include "kestan/core/schemat.h"
#include "kestan/overlay/photooverlay.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PhotoOverlaySchema final
    : public SchemaT<PhotoOverlay, NoInstancePolicy, NoDerivedPolicy> {
public:
  PhotoOverlaySchema();
};

extern template class SchemaT<PhotoOverlay, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
