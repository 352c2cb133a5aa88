#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/tour/playlist.h"
#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PlaylistSchema final
    : public SchemaT<Playlist, NewInstancePolicy, NoDerivedPolicy> {
public:
  PlaylistSchema();

  ObjArrayField<TourPrimitive> primitives{*this, QString(), TourPrimitive::GetClassSchema(),
                                          OffsetOf(&Playlist::primitives_)};
};

extern template class SchemaT<Playlist, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
