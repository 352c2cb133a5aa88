#pragma once

#include "kestan/core/simplelistfield.h"

namespace vorrel::kestan {

/// The `coordinates` of a geometry: tuples of longitude, latitude and altitude, stored
/// normalised. Written even when empty.
class KESTAN_EXPORT NormLLAListField final : public SimpleListField<Vec3<double>> {
public:
  using SimpleListField::SimpleListField;

  bool KeepsText() const override { return false; }
  /// With the attribute "type" of value "polyline" the items are pairs, latitude first.
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  /// The same text as positions, behind those that `positions` holds.
  static void Parse(const QString& text, const AttributeList* attrs,
                    mmvector<Vec3<double>>& positions);

  const mmvector<Vec3<double>>& GetPositions(const SchemaObject& object) const {
    return Array(object);
  }
  /// Stores a copy and notifies.
  void SetPositions(SchemaObject& object, const mmvector<Vec3<double>>& positions) const;

  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  QString toString(const SchemaObject& object, int index) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void GetForm(const SchemaObject& object, QString& text, QString& attrs) const override;

private:
  /// True when the positions can stand as pairs, as attributes ask for: that form has no altitudes.
  /// Otherwise takes the mark of the form out of the attributes.
  bool IsPolyline(const SchemaObject& object, QString& attrs) const;
};

} // namespace vorrel::kestan
