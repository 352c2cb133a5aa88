#pragma once

#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/host/boundingvolume.h"
#include "kestan/spacetime/latlonaltbox.h"
#include "kestan/spacetime/lod.h"

#include <cstdint>
#include <optional>

namespace vorrel::kestan {

class RegionSchema;

/// The box, and the size on the screen, in which a feature is shown.
///
/// The client looks which regions are in sight, and tells each by `Update`, frame by frame. The
/// region tells its observers of changes, by the fields `active` and `lodOpacity`, and hides the
/// feature that its content stands in for while that can be seen. A region that goes leaves nothing
/// hidden.
class KESTAN_EXPORT Region final : public SchemaObject {
public:
  using ClassSchema = RegionSchema;
  static const Schema& GetClassSchema();
  Region(const KmlId& id, const QString& baseUrl);
  ~Region() override;

  /// The box. Where there's none, the region makes one of the whole globe; that isn't written
  /// unless somebody changes it.
  LatLonAltBox* GetLatLonAltBox() const;
  void SetLatLonAltBox(LatLonAltBox* box);
  /// May be null.
  Lod* GetLod() const { return lod_.get(); }
  void SetLod(Lod* lod);

  /// Brings the flatness up to date with the box; nothing without a box.
  void UpdateExtents() const;
  /// See `math::ComputeFlatness`.
  float GetFlatness() const { return flatness_; }

  /// Looks for the feature that `hrefToReplace` names. One that was hidden so far shows again.
  void UpdateFeatureToReplace();
  AbstractFeature* GetFeatureToReplace() const { return replacedFeature_.get(); }

  /// What the client has found in this frame, `System::s_cur_frame`: whether the region is in
  /// sight, and how opaque its content is. Answers whether it's active, that is in sight and not
  /// wholly transparent.
  bool Update(BoundingVolume::Result result, float opacity);
  bool IsActive() const { return active_; }
  float GetLodOpacity() const { return lodOpacity_; }
  BoundingVolume::Result GetLastResult() const { return lastResult_; }
  /// The frame of the last update, and the one in which this region or one below it was active
  /// last; `kNoFrame` for never.
  std::uint32_t GetLastUpdateFrame() const { return lastUpdateFrame_; }
  std::uint32_t GetLastActiveFrame() const { return lastActiveFrame_; }
  static constexpr std::uint32_t kNoFrame = 0xFFFFFFFF;

  void NotifyFieldChanged(const Field& field) override;
  void NotifyInheritedVisibilityChanged() override;

protected:
  void LeaveOwners() override;

private:
  friend class RegionSchema;
  class Hiding;

  AbstractFeature* FindFeatureToReplace() const;
  void MarkActive(std::uint32_t frame);
  static void Hide(AbstractFeature& feature, bool hidden);
  void HideReplaced(float leastOpacity);

  mutable RefPtr<LatLonAltBox> latLonAltBox_;
  RefPtr<Lod> lod_;
  std::uint32_t replaceRevision_ = 0; ///< Of the `Lod`, when the feature was found.
  Watcher<AbstractFeature> replacedFeature_;
  bool active_ = false;
  bool isHiding_ = false; ///< Its turn comes, or has come, in a chain of features that are hidden.
  mutable float flatness_ = 0.0F;
  mutable std::optional<std::uint32_t> flatnessRevision_; ///< None before the first computation.
  float lodOpacity_ = 0.0F;
  BoundingVolume::Result lastResult_ = BoundingVolume::kOutside;
  std::uint32_t lastActiveFrame_ = kNoFrame;
  std::uint32_t lastUpdateFrame_ = kNoFrame;
};

} // namespace vorrel::kestan
