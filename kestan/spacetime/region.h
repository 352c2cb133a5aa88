#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class RegionSchema;

/// The box, and the size on the screen, in which a feature is shown.
class KESTAN_EXPORT Region : public SchemaObject {
public:
  using ClassSchema = RegionSchema;
  static const Schema& GetClassSchema();
  ~Region() override;

protected:
  Region(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
