#pragma once

#include "kestan/custom/data.h"
#include "kestan/custom/samples.h"

namespace vorrel::kestan {

class ArrayDataSchema;

/// One value for each sample of a track, as texts. An empty one is a gap.
class KESTAN_EXPORT ArrayData final : public AbstractData {
public:
  using ClassSchema = ArrayDataSchema;
  static const Schema& GetClassSchema();
  ArrayData(const KmlId& id, const QString& baseUrl);
  ~ArrayData() override;

  int GetCount() const { return static_cast<int>(samples_.values.size()); }
  /// The value of a sample; one in a gap between numbers follows from its neighbours.
  QString GetIndexedValue(int i);
  /// Fills the gaps for those who ask. What is written stays as it was read.
  void CleanUnspecifiedValues();

  void NotifyFieldChanged(const Field& field) override;

private:
  friend class ArrayDataSchema;

  Samples samples_;
};

} // namespace vorrel::kestan
