#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class CustomSchemaSchema;

/// A class that a document declares for itself.
class KESTAN_EXPORT CustomSchema : public SchemaObject {
public:
  using ClassSchema = CustomSchemaSchema;
  static const Schema& GetClassSchema();
  ~CustomSchema() override;

  /// The name of the class, as the document has it.
  const QString& GetName() const { return name_; }

protected:
  CustomSchema(const Schema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class CustomSchemaSchema;

  QString name_;
};

} // namespace vorrel::kestan
