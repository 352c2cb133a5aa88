#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

/// What the parts of a style share: each remembers which of its fields were given.
///
/// So a merge of two styles tells a field that was set to its default from one that wasn't set,
/// and a write gives back what was read.
class KESTAN_EXPORT SubStyle : public SchemaObject {
public:
  unsigned GetFieldsSpecified() const override { return specified_; }

  /// Takes back what was given for a field: it has its default again, and a shared style shows
  /// through. Observers hear of it. False for a field of another class.
  bool ClearField(const Field& field);

  /// Counts as given afterwards what one of the two gave.
  void merge(const SchemaObject& a, const SchemaObject& b) override;
  void WriteKml(WriteState& state) const override;
  bool IsGiven(const Field& field) const override { return (specified_ & field.GetMaskBit()) != 0; }
  void SetNotGiven(const Field& field) override { SetSpecified(specified_ & ~field.GetMaskBit()); }
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

protected:
  SubStyle(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// Sets the mask of the fields that count as given.
  void SetSpecified(unsigned mask);

  unsigned specified_ = 0;
};

} // namespace vorrel::kestan
