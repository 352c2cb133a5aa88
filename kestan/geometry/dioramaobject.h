#pragma once

#include "kestan/geometry/geometry.h"

#include <array>

namespace vorrel::kestan {

class DioramaObjectSchema;

/// A shape of the client's own: a fixed box without positions, and three texts. It has no KML
/// form, so documents can't hold one.
class KESTAN_EXPORT DioramaObject final : public Geometry {
public:
  using ClassSchema = DioramaObjectSchema;
  static const Schema& GetClassSchema();

  DioramaObject(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  DioramaObject(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~DioramaObject() override;

  void SetBBox(const GeoBoundingBox<double>& box) { bbox_ = box; }
  /// `index` is 0, 1 or 2.
  const QString& GetText(std::size_t index) const { return texts_[index]; }
  void SetText(std::size_t index, const QString& text) { texts_[index] = text; }

  void WriteKml(WriteState& state) const override;
  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override;
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  int GetCoordCount() const override { return 0; }
  void NotifyCoordsChanged() override;
  GeoBoundingBox<double> GetBBox() const override { return bbox_; }

private:
  GeoBoundingBox<double> bbox_;
  std::array<QString, 3> texts_;
};

} // namespace vorrel::kestan
