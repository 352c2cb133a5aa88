#include "kestan/tour/playlist.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/tour/playlistschema.h"

namespace vorrel::kestan {

template class SchemaT<Playlist, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Playlist>;

namespace {

const PlaylistSchema& Fields() { return PlaylistSchema::GetSingleton(); }

} // namespace

PlaylistSchema::PlaylistSchema() : SchemaT("Playlist", nullptr, Namespace::kExt) {}

const Schema& Playlist::GetClassSchema() { return PlaylistSchema::GetSingleton(); }

Playlist::Playlist(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

Playlist::~Playlist() { NotifyPreDelete(); }

bool Playlist::AddPrimitive(TourPrimitive* primitive) {
  return Fields().primitives.add(*this, primitive);
}

bool Playlist::PrependPrimitive(TourPrimitive* primitive) {
  return primitive && Fields().primitives.insert(*this, primitive, 0);
}

bool Playlist::RemPrimitive(TourPrimitive* primitive) {
  return Fields().primitives.remove(*this, primitive);
}

} // namespace vorrel::kestan
