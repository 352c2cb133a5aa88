#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class ViewVolumeSchema;

/// What a camera sees of a photograph: the angles from the line of sight to its edges, in degrees,
/// and how far the photograph is from the camera, in metres.
class KESTAN_EXPORT ViewVolume final : public SchemaObject {
public:
  using ClassSchema = ViewVolumeSchema;
  static const Schema& GetClassSchema();
  ViewVolume(const KmlId& id, const QString& baseUrl);
  ~ViewVolume() override;

  /// One that somebody wants to look at or change, and that no document has: until something is set
  /// in it, it isn't written.
  static RefPtr<ViewVolume> CreateImplied();

  float GetLeftFov() const { return leftFov_; }
  float GetRightFov() const { return rightFov_; }
  float GetBottomFov() const { return bottomFov_; }
  float GetTopFov() const { return topFov_; }
  float GetNear() const { return near_; }

  /// True when nothing lies between the edges.
  bool isEmpty() const { return leftFov_ >= rightFov_ || bottomFov_ >= topFov_; }
  bool equals(const ViewVolume& other) const;

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKml(WriteState& state) const override;

private:
  friend class ViewVolumeSchema;

  float leftFov_ = 0.0F;
  float rightFov_ = 0.0F;
  float bottomFov_ = 0.0F;
  float topFov_ = 0.0F;
  float near_ = 0.0F;
  bool isImplied_ = false;
};

} // namespace vorrel::kestan
