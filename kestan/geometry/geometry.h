#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/geometry/geoboundingbox.h"
#include "kestan/host/cullrect.h"
#include "kestan/host/vec3.h"

namespace vorrel {
class DateTime;
}

namespace vorrel::kestan {

class AbstractFeature;
class GeometrySchema;
class GeometryVisitor;
class GeometryVisitorConst;

/// Base of all shapes of a placemark.
///
/// Positions are longitude, latitude and altitude in the normalised form of
/// `convert::LLAToNorm`. Boxes are cached on read, so that reading one from two threads at a time
/// needs the caller's exclusion.
class KESTAN_EXPORT Geometry : public SchemaObject {
public:
  using ClassSchema = GeometrySchema;
  static const Schema& GetClassSchema();

  /// The feature that this shape belongs to, also through collections; null without one.
  AbstractFeature* GetFeature() const { return feature_; }
  AltitudeMode GetAltitudeMode() const { return static_cast<AltitudeMode>(altitudeMode_); }
  bool GetExtrude() const { return GetBit(kBitExtrude); }
  bool GetTessellate() const { return GetBit(kBitTessellate); }
  const QString& GetName() const { return name_; }
  /// True once the draw order has been changed through its field.
  bool IsDrawOrderSet() const { return drawOrderSet_; }
  /// Tells observers, and the collections that hold this shape, that the box has changed.
  void BoundChanged();

  /// Calls the `visit` of the shape's own class.
  virtual void accept(GeometryVisitorConst& visitor) const = 0;
  virtual void accept(GeometryVisitor& visitor) = 0;
  virtual void SetAltitudeMode(AltitudeMode mode);
  virtual void SetTessellate(bool tessellate);
  virtual void SetExtrude(bool extrude);
  /// What is added to each altitude when the shape is shown.
  virtual double GetAltitudeOffset() const { return 0.0; }
  /// Altitudes of the positions in their order, as far as `count` and the positions reach.
  virtual void SetAltitudes(const double* values, int count) = 0;
  /// Appends the altitude of each position.
  virtual void GetAltitudes(mmvector<double>& out) const = 0;
  /// The same altitude for all positions.
  virtual void SetAltitude(double altitude) = 0;
  /// The positions, and in `count` their number; null for a shape without a list of its own.
  virtual const Vec3<double>* GetCoords(int& count) const = 0;
  virtual void SetCoords(const Vec3<double>* coords, int count);
  virtual int GetCoordCount() const = 0;
  /// Widens the span by the shape's own times. False for shapes without a time.
  virtual bool GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const;
  virtual void NotifyCoordsChanged() = 0;
  virtual void NotifyCoordAltsChanged();
  virtual void NotifySelectionChanged();
  /// Box around all positions; empty without any.
  virtual GeoBoundingBox<double> GetBBox() const = 0;
  /// The box as seen from above.
  virtual CullRect GetBounds() const;
  /// The own name, else that of the nearest named collection around it, else the feature's.
  virtual QString GetInheritedName() const;
  virtual void SetName(const QString& name);
  virtual int GetDrawOrder() const { return drawOrder_; }
  virtual void SetDrawOrder(int order);
  /// Enters the custom schemas that the shape's data need.
  virtual void CollectSchemas(WriteState& state) const;

  bool IsGiven(const Field& field) const override;
  void SetNotGiven(const Field& field) override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyInheritedVisibilityChanged() override;
  void NotifyOwnerChanged() override;

protected:
  Geometry(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// The last step of constructors: the shape becomes that of `feature`, which may be null, and is
  /// announced. Where the feature has one already, or holds none, the shape belongs to nobody.
  void Complete(AbstractFeature* feature);
  /// Whether anybody hears of a change here: the news climbs from owner to owner.
  bool IsHeard() const;
  /// True when a cached box has to be made anew; says so once.
  bool TakeBoundsDirty() const;
  /// Finds `feature` again. False when it's the same as before.
  bool UpdateFeature();

private:
  friend class GeometrySchema;
  friend class MultiGeometry;

  int altitudeMode_ = kClampToGround;
  AbstractFeature* feature_ = nullptr;
  QString name_;
  int drawOrder_;
  bool drawOrderSet_ = false;
};

} // namespace vorrel::kestan
