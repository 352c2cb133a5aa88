#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/overlay/abstractoverlay.h"
#include "kestan/style/icon.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractOverlaySchema final
    : public SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractOverlaySchema();

  SimpleField<Color32> color{*this, "color", OffsetOf(&AbstractOverlay::color_), Field::kElement};
  SimpleField<int> drawOrder{*this, "drawOrder", OffsetOf(&AbstractOverlay::drawOrder_),
                             Field::kElement};
  ObjField<Icon> icon{*this, QString(), Icon::GetClassSchema(), OffsetOf(&AbstractOverlay::icon_)};
  SimpleField<int> refreshPeriod{*this, "refreshPeriod", OffsetOf(&AbstractOverlay::refreshPeriod_),
                                 Field::kElement, Field::kNoWrite | Field::kNoCopy};
  PhantomField fetchState{*this, "fetchState"}; ///< Fires when the fetch state changes.
  PhantomField imageSize{*this, "imageSize"};   ///< Fires when the size of the image is known.
};

extern template class SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
