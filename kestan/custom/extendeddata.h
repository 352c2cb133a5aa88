#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class ExtendedDataSchema;

/// A user's own data on a feature or a track.
class KESTAN_EXPORT ExtendedData : public SchemaObject {
public:
  using ClassSchema = ExtendedDataSchema;
  static const Schema& GetClassSchema();
  ~ExtendedData() override;

  /// Reports the schemas that the data follow for the output of `state`.
  void CollectSchemas(WriteState& state) const;
  /// The value of an untyped item by its name, or of a typed one by the names of its schema and its
  /// field with a "/" between. False when there's none.
  bool FindEntityValue(const QString& key, QString* value) const;

protected:
  ExtendedData(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
