#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/tour/playlist.h"
#include "kestan/tour/tour.h"

namespace vorrel::kestan {

/// The list of a tour. One that the tour has made for itself isn't written with a tour that was
/// read without one, as long as it's empty.
class KESTAN_EXPORT PlaylistField final : public ObjField<Playlist> {
public:
  using ObjField::ObjField;

  void WriteKml(const SchemaObject& object, WriteState& state) const override;
};

class KESTAN_EXPORT TourSchema final : public SchemaT<Tour, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum modes_; // the field refers to it, so that it comes first

public:
  TourSchema();

  PlaylistField playlist{*this, QString(), Playlist::GetClassSchema(), OffsetOf(&Tour::playlist_)};
  EnumField tourMode{
      *this, "tourMode", modes_, kTourInteractive, OffsetOf(&Tour::tourMode_), Field::kElement};
};

extern template class SchemaT<Tour, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
