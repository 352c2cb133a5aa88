#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class IconSchema;

/// An image, named by a link.
class KESTAN_EXPORT Icon : public SchemaObject {
public:
  using ClassSchema = IconSchema;
  static const Schema& GetClassSchema();
  ~Icon() override;

protected:
  Icon(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
