#pragma once

#include "kestan/spacetime/abstractxform.h"

namespace vorrel::kestan {

class LatLonQuadSchema;

/// Four free corners in a list, counter-clockwise from the south-west: the element
/// `gx:LatLonQuad`.
class KESTAN_EXPORT LatLonQuad final : public AbstractXform {
public:
  using ClassSchema = LatLonQuadSchema;
  static const Schema& GetClassSchema();
  LatLonQuad(const KmlId& id, const QString& baseUrl);
  ~LatLonQuad() override;

  /// The origin for a corner that the list doesn't reach to.
  void GetCorner(Vec3<double>& out, int corner) const override;
  void GetCorners(Vec3<double>* out, int count) const override;
  // Both bring the list to four entries first, and tell of a change of an entry only. The second
  // takes four positions.
  void SetCorner(const Vec3<double>& position, int corner) override;
  void SetCorners(const Vec3<double>* positions, int count) override;
  /// North and east below south and west where the list is empty.
  void GetLatLonExtent(double& north, double& south, double& east, double& west) const override;
  /// Takes the edges as they are; altitudes stay.
  void SetLatLonExtent(double north, double south, double east, double west, Edge edge) override;

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKmlFields(WriteState& state) const override;

private:
  friend class LatLonQuadSchema;

  bool SetEntry(const Vec3<double>& position, int corner);

  mmvector<Vec3<double>> coordinates_;
  bool isGiven_ = false; ///< The list is more than what it was made with.
};

} // namespace vorrel::kestan
