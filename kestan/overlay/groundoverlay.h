#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class AbstractView;
class AbstractXform;
class GroundOverlaySchema;

/// An image draped on the ground.
class KESTAN_EXPORT GroundOverlay final : public AbstractOverlay {
public:
  using ClassSchema = GroundOverlaySchema;
  static const Schema& GetClassSchema();
  GroundOverlay(const KmlId& id, const QString& baseUrl);
  ~GroundOverlay() override;

  /// Where the corners of the image lie; null while nobody has said.
  AbstractXform* GetXform() const { return xform_.get(); }
  void SetXform(AbstractXform* xform);
  /// In metres.
  double GetAltitude() const { return altitude_; }
  void SetAltitude(double altitude);
  AltitudeMode GetAltitudeMode() const { return static_cast<AltitudeMode>(altitudeMode_); }
  void SetAltitudeMode(AltitudeMode mode);

  /// Moves the view above the image, so that it fills the field of view, of which the angles are in
  /// degrees. Without corners nothing happens.
  void GetContainingView(float fovX, float fovY, AbstractView& view) const;

  void accept(FeatureVisitor& visitor) override;

private:
  friend class GroundOverlaySchema;

  RefPtr<AbstractXform> xform_;
  int altitudeMode_ = kClampToGround;
  double altitude_ = 0.0;
};

} // namespace vorrel::kestan
