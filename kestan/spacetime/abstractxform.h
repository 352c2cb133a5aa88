#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

class AbstractXformSchema;

/// A place on the globe with four corners, which an image or a region is laid on.
///
/// Positions are normalised: longitudes and latitudes are degrees divided by 180. Corners are
/// numbered 0 top left, 1 top right, 2 bottom left, 3 bottom right. Whatever isn't finite, or lies
/// further away than any number of turns makes sense, is refused: it changes nothing.
class KESTAN_EXPORT AbstractXform : public SchemaObject {
public:
  using ClassSchema = AbstractXformSchema;
  static const Schema& GetClassSchema();
  ~AbstractXform() override;

  /// The edge or corner that a user drags.
  enum Edge : int {
    kEdgeNone = 0, ///< None: the box is set as a whole.
    kEdgeNorthEast = 1,
    kEdgeSouthEast = 2,
    kEdgeSouthWest = 3,
    kEdgeNorthWest = 4,
    kEdgeNorth = 5,
    kEdgeEast = 6,
    kEdgeSouth = 7,
    kEdgeWest = 8,
  };

  static constexpr int kCornerCount = 4;

  // Operations that such places have, in the order of their slots.
  /// A number that no corner has leaves `out` as it is.
  virtual void GetCorner(Vec3<double>& out, int corner) const = 0;
  /// All corners, into an array of four.
  virtual void GetCorners(Vec3<double>* out, int count) const = 0;
  virtual void SetCorner(const Vec3<double>& position, int corner) = 0;
  /// All corners, from an array of four.
  virtual void SetCorners(const Vec3<double>* positions, int count) = 0;
  virtual void GetLatLonExtent(double& north, double& south, double& east, double& west) const = 0;
  virtual void SetLatLonExtent(double north, double south, double east, double west, Edge edge) = 0;

  /// Makes a sound box of one of which an edge has been dragged, also across the date line or
  /// through the other side: west no more than a turn below east, the middle within the globe,
  /// latitudes between the poles. `oldEast` and `oldWest` are those from before. True when a
  /// longitude has changed.
  static bool NormalizeExtents(double& north, double& south, double& east, double& west,
                               double oldEast, double oldWest, Edge edge);

protected:
  AbstractXform(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// What isn't refused.
  static bool IsPosition(const Vec3<double>& position);
  static bool IsExtent(double north, double south, double east, double west);
};

} // namespace vorrel::kestan
