#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class Playlist;
class TourSchema;

/// How a tour goes by; for clients, which play it.
enum TourMode { kTourInteractive = 0, kTourAutopilot = 1, kTourRealtime = 2 };

/// A scripted flight: a list of what happens, one after the other.
class KESTAN_EXPORT Tour final : public AbstractFeature {
public:
  using ClassSchema = TourSchema;
  static const Schema& GetClassSchema();
  Tour(const KmlId& id, const QString& baseUrl);
  ~Tour() override;

  /// One of its own, empty at first, until another one takes its place.
  Playlist* GetPlaylist() const { return playlist_.get(); }
  TourMode GetTourMode() const { return static_cast<TourMode>(tourMode_); }
  void SetTourMode(TourMode mode);
  /// The sum of the durations of all that the list holds, in seconds; delays don't count.
  double GetDuration() const;

  void accept(FeatureVisitor& visitor) override;
  // A tour has no geometry.
  void Accept(GeometryVisitorConst*) const override {}
  void Accept(GeometryVisitor*) override {}

private:
  friend class TourSchema;

  RefPtr<Playlist> playlist_;
  int tourMode_ = kTourInteractive;
};

} // namespace vorrel::kestan
