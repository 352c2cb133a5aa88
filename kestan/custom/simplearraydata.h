#pragma once

#include "kestan/custom/samples.h"
#include "kestan/custom/simpledata.h"

namespace vorrel::kestan {

class SimpleArrayDataSchema;

/// One value for each sample of a track, for a field that a document declares. An empty one is a
/// gap.
class KESTAN_EXPORT SimpleArrayData final : public AbstractSimpleData {
public:
  using ClassSchema = SimpleArrayDataSchema;
  static const Schema& GetClassSchema();
  SimpleArrayData(const KmlId& id, const QString& baseUrl);
  ~SimpleArrayData() override;

  int GetCount() const { return static_cast<int>(samples_.values.size()); }
  /// The value of a sample; one in a gap between numbers follows from its neighbours.
  QString GetIndexedValue(int i);
  /// Fills the gaps for those who ask. What is written stays as it was read.
  void CleanUnspecifiedValues();

  void SetValueInObject(SchemaObject& object) override;
  void NotifyFieldChanged(const Field& field) override;

private:
  friend class SimpleArrayDataSchema;

  CustomField::Type GetDeclaredType() const;

  Samples samples_;
};

} // namespace vorrel::kestan
