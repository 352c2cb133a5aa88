#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class AbstractViewSchema;

/// Where the camera stands when an object is shown.
class KESTAN_EXPORT AbstractView : public SchemaObject {
public:
  using ClassSchema = AbstractViewSchema;
  static const Schema& GetClassSchema();
  ~AbstractView() override;

protected:
  AbstractView(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
