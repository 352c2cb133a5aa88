#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class AbstractDataSchema;
class DataSchema;

/// An item of a user's own data that has a name and no schema.
class KESTAN_EXPORT AbstractData : public SchemaObject {
public:
  using ClassSchema = AbstractDataSchema;
  static const Schema& GetClassSchema();
  ~AbstractData() override;

  const QString& GetName() const { return name_; }
  void SetName(const QString& name);
  /// The text for people.
  const QString& GetDisplayName() const { return displayName_; }
  void SetDisplayName(const QString& text);

protected:
  AbstractData(const Schema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class AbstractDataSchema;

  QString name_;
  QString displayName_;
};

/// One value, as a text.
class KESTAN_EXPORT Data final : public AbstractData {
public:
  using ClassSchema = DataSchema;
  static const Schema& GetClassSchema();
  Data(const KmlId& id, const QString& baseUrl);
  ~Data() override;

  const QString& GetValue() const { return value_; }
  void SetValue(const QString& text);

  QString toString() const override { return value_; }
  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;

private:
  friend class DataSchema;

  QString value_;
};

} // namespace vorrel::kestan
