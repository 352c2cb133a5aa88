#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class ArrayData;
class Data;
class ExtendedDataSchema;
class SchemaData;

/// A user's own data on a feature or a track: untyped items, values for fields that a document
/// declares, and arrays with a value for each sample of a track.
class KESTAN_EXPORT ExtendedData final : public SchemaObject {
public:
  using ClassSchema = ExtendedDataSchema;
  static const Schema& GetClassSchema();
  ExtendedData(const KmlId& id, const QString& baseUrl);
  ~ExtendedData() override;

  const mmvector<RefPtr<Data>>& GetDatas() const { return datas_; }
  const mmvector<RefPtr<SchemaData>>& GetSchemaDatas() const { return schemaDatas_; }
  const mmvector<RefPtr<ArrayData>>& GetArrayDatas() const { return arrayDatas_; }
  /// The first one of the name, or null.
  Data* FindData(const QString& name) const;
  /// The first one whose schema has the name, or null.
  SchemaData* FindSchemaData(const QString& name) const;

  /// Reports the schemas that the data follow for the output of `state`.
  void CollectSchemas(WriteState& state) const;
  /// The value of an untyped item by its name, or of a typed one by the names of its schema and its
  /// field with a "/" between. False when there's none.
  bool FindEntityValue(const QString& key, QString* value) const;

private:
  friend class ExtendedDataSchema;

  mmvector<RefPtr<SchemaData>> schemaDatas_;
  mmvector<RefPtr<Data>> datas_;
  mmvector<RefPtr<ArrayData>> arrayDatas_;
};

} // namespace vorrel::kestan
