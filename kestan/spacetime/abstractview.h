#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/spacetime/timeprimitive.h"
#include "kestan/spacetime/viewstate.h"

namespace vorrel::kestan {

class AbstractViewSchema;

/// Where the camera stands when an object is shown, with the time and the render options that
/// belong to it.
class KESTAN_EXPORT AbstractView : public SchemaObject {
public:
  using ClassSchema = AbstractViewSchema;
  static const Schema& GetClassSchema();
  ~AbstractView() override;

  /// The horizontal field of view in degrees; negative for the client's own.
  double GetFovX() const { return fovX_; }
  void SetFovX(double degrees);
  TimePrimitive* GetTimePrimitive() const { return timePrimitive_.get(); }
  void SetTimePrimitive(TimePrimitive* time);
  ViewState* GetViewState() const { return viewState_.get(); }
  void SetViewState(ViewState* state);

  // Operations that views add, in the order of their slots.
  /// Moves the camera above a box of the globe, so that the box fills the field of view. Angles are
  /// in degrees, the altitude of the box in metres. North and south may come either way round, and
  /// so may east and west. Sends no notice. A box without a finite view changes nothing.
  virtual void ContainExtents(float fovX, float fovY, double north, double south, double east,
                              double west) = 0;
  virtual void ContainExtents(float fovX, float fovY, double north, double south, double east,
                              double west, double altitude, double tilt) = 0;
  /// Whether altitudes count from the sea.
  virtual bool IsAltitudeAbsolute() const = 0;
  virtual AltitudeMode GetAltitudeMode() const = 0;
  /// Whether `other`, which may be null, is a view of the same class of the same place.
  virtual bool AlmostEqual(AbstractView* other) const = 0;

protected:
  AbstractView(const Schema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class AbstractViewSchema;

  RefPtr<TimePrimitive> timePrimitive_;
  RefPtr<ViewState> viewState_;
  double fovX_ = -1.0;
};

} // namespace vorrel::kestan
