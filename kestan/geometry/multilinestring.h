#pragma once

#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

class LineString;
class MultiLineStringSchema;

/// A collection of lines only.
class KESTAN_EXPORT MultiLineString final : public MultiGeometry {
public:
  using ClassSchema = MultiLineStringSchema;
  static const Schema& GetClassSchema();

  MultiLineString(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  MultiLineString(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~MultiLineString() override;

  /// Null for a member that is no line.
  LineString* GetLineString(int index) const;

  // Both refuse what is no line.
  bool InsertGeometry(int index, Geometry& geometry) override;
  bool SetGeometry(int index, Geometry& geometry) override;

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;

protected:
  const Field& GetMembersField() const override;
};

} // namespace vorrel::kestan
