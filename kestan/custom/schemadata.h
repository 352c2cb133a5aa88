#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/custom/customschema.h"

#include <QString>

namespace vorrel::kestan {

class AbstractSimpleData;
class SchemaDataSchema;
class SimpleArrayData;
class SimpleData;

/// Values for the fields of a class that a document declares. The class is referred to by a URL,
/// and may come later, or from another document.
class KESTAN_EXPORT SchemaData final : public SchemaObject {
public:
  using ClassSchema = SchemaDataSchema;
  static const Schema& GetClassSchema();
  SchemaData(const KmlId& id, const QString& baseUrl);
  ~SchemaData() override;

  const QString& GetSchemaUrl() const { return schemaUrl_; }
  void SetSchemaUrl(const QString& url);
  /// Null as long as it isn't there.
  CustomSchema* GetSchema() const { return schema_.get(); }
  /// The name of the schema; null without one.
  QString GetName() const { return schema_ ? schema_->GetName() : QString(); }

  const mmvector<RefPtr<SimpleData>>& GetSimpleDatas() const { return simpleDatas_; }
  const mmvector<RefPtr<SimpleArrayData>>& GetSimpleArrayDatas() const { return simpleArrayDatas_; }
  /// The first one of the name, or null.
  SimpleData* FindSimpleData(const QString& name) const;

  /// The instance of the schema that holds the values by their types, made when it's asked for
  /// first; null without a schema, and for one that has no instances. It's no part of the document.
  SchemaObject* GetCustomObject();
  /// Hands all values to that instance.
  void UpdateSimpleDatas();
  /// A value has changed.
  void NotifyValueChanged(AbstractSimpleData& data);

  /// Reports the schema for the output of `state`.
  void CollectSchemas(WriteState& state) const;

  void NotifyFieldChanged(const Field& field) override;
  void OnUrlLoad(const StrField& field, SchemaObject* loaded) override;

private:
  friend class SchemaDataSchema;

  QString schemaUrl_;
  RefPtr<CustomSchema> schema_;
  mmvector<RefPtr<SimpleData>> simpleDatas_;
  mmvector<RefPtr<SimpleArrayData>> simpleArrayDatas_;
  RefPtr<SchemaObject> customObject_;
  bool isStale_ = false; ///< The instance lacks what has changed.
};

} // namespace vorrel::kestan
