#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class CustomSchemaObjectSchema;

/// An instance of a class that a document declares without a parent. All that it holds lies in the
/// declared fields.
class KESTAN_EXPORT CustomSchemaObject final : public SchemaObject {
public:
  using ClassSchema = CustomSchemaObjectSchema;
  static const Schema& GetClassSchema();
  CustomSchemaObject(const KmlId& id, const QString& baseUrl);
  CustomSchemaObject(const Schema& schema, const KmlId& id, const QString& baseUrl);
  ~CustomSchemaObject() override;
};

} // namespace vorrel::kestan
