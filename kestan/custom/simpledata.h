#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class AbstractSimpleDataSchema;
class CustomField;
class SchemaData;
class SimpleDataSchema;

/// A value, or an array of them, for a field that a document declares.
class KESTAN_EXPORT AbstractSimpleData : public SchemaObject {
public:
  using ClassSchema = AbstractSimpleDataSchema;
  static const Schema& GetClassSchema();
  ~AbstractSimpleData() override;

  /// The name of the field.
  const QString& GetName() const { return name_; }
  void SetName(const QString& name);
  /// The declaration of the field, in the schema of the data around it; null when there's none.
  CustomField* GetCustomField() const;
  /// The declaration's text for people, or null.
  QString GetDisplayName() const;
  /// Hands the value to the field of an instance of the schema. What isn't of its type gives none.
  virtual void SetValueInObject(SchemaObject& object) = 0;

  void NotifyFieldChanged(const Field& field) override;

protected:
  AbstractSimpleData(const Schema& schema, const KmlId& id, const QString& baseUrl);

  SchemaData* GetSchemaData() const;
  /// The field of instances for this value; null when there's none.
  const Field* GetInstanceField(const SchemaObject& object) const;

private:
  friend class AbstractSimpleDataSchema;

  QString name_;
};

/// One value. Its text stays as it is, whatever the type.
class KESTAN_EXPORT SimpleData final : public AbstractSimpleData {
public:
  using ClassSchema = SimpleDataSchema;
  static const Schema& GetClassSchema();
  SimpleData(const KmlId& id, const QString& baseUrl);
  ~SimpleData() override;

  const QString& GetValue() const { return value_; }
  void SetValue(const QString& text);

  void SetValueInObject(SchemaObject& object) override;
  QString toString() const override { return value_; }
  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;

private:
  friend class SimpleDataSchema;

  QString value_;
};

/// The value as a `T`: int, float, double or `QString`. 0 for a text that doesn't convert.
template <class T> T GetTypedValueFromSimpleData(const SimpleData& data);

template <> KESTAN_EXPORT int GetTypedValueFromSimpleData(const SimpleData& data);
template <> KESTAN_EXPORT double GetTypedValueFromSimpleData(const SimpleData& data);
template <> KESTAN_EXPORT float GetTypedValueFromSimpleData(const SimpleData& data);
template <> KESTAN_EXPORT QString GetTypedValueFromSimpleData(const SimpleData& data);

} // namespace vorrel::kestan
