#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class ThemeSchema;

/// How imported features are styled from their data.
class KESTAN_EXPORT Theme : public SchemaObject {
public:
  using ClassSchema = ThemeSchema;
  static const Schema& GetClassSchema();
  ~Theme() override;

protected:
  Theme(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
