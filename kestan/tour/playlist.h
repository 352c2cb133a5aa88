#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class PlaylistSchema;
class TourPrimitive;

/// What happens in a tour, in order.
class KESTAN_EXPORT Playlist final : public SchemaObject {
public:
  using ClassSchema = PlaylistSchema;
  static const Schema& GetClassSchema();
  Playlist(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Playlist() override;

  /// Entries may be null.
  const mmvector<RefPtr<TourPrimitive>>& GetPrimitives() const { return primitives_; }
  // Each answers false where nothing changes.
  bool AddPrimitive(TourPrimitive* primitive);
  bool PrependPrimitive(TourPrimitive* primitive);
  bool RemPrimitive(TourPrimitive* primitive);

private:
  friend class PlaylistSchema;

  mmvector<RefPtr<TourPrimitive>> primitives_;
};

} // namespace vorrel::kestan
