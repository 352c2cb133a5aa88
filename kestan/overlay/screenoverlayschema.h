#pragma once

#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/screenvecfield.h"
#include "kestan/overlay/screenoverlay.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ScreenOverlaySchema final
    : public SchemaT<ScreenOverlay, NewInstancePolicy, NoDerivedPolicy> {
public:
  ScreenOverlaySchema();

  ScreenVecField overlayXY{*this, "overlayXY", OffsetOf(&ScreenOverlay::overlayXY_),
                           Field::kElement};
  ScreenVecField screenXY{*this, "screenXY", OffsetOf(&ScreenOverlay::screenXY_), Field::kElement};
  ScreenVecField rotationXY{*this, "rotationXY", OffsetOf(&ScreenOverlay::rotationXY_),
                            Field::kElement};
  ScreenVecField size{*this, "size", OffsetOf(&ScreenOverlay::size_), Field::kElement};
  SimpleField<float> rotation{*this, "rotation", OffsetOf(&ScreenOverlay::rotation_),
                              Field::kElement};
  PhantomField texMat{*this, "texMat"};
};

extern template class SchemaT<ScreenOverlay, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
