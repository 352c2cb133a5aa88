#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

#include <memory>

namespace vorrel::kestan {

class CustomFieldSchema;
class CustomSchema;
class Enum;

/// A field that a document declares for its own class. The class of the declaration tells whether
/// it's a single value, an array or a list of them, a child object or an array of those.
///
/// The `Field` is made when name and type are known and the declaration stands in its class. One
/// that can't be made leaves the declaration as it is.
class KESTAN_EXPORT CustomField : public SchemaObject {
public:
  /// Of a value. For child objects the type is the name of a class instead.
  enum Type {
    kNoType = -3, ///< The name of none.
    kInt = 0,
    kUint,
    kShort, ///< Unsigned, as `kUshort`.
    kUshort,
    kFloat,
    kDouble,
    kBool,
    kString,
    kWstring,
    kSharedString,
    kSharedWstring,
    kVec2, ///< Has no field.
  };
  /// Bits of `GetState`.
  enum State { kHasType = 1, kHasName = 2, kIsMade = 4 };

  using ClassSchema = CustomFieldSchema;
  static const Schema& GetClassSchema();
  /// Declares a field as the last one of `owner`, which takes the declaration. `kind` is one of the
  /// classes of declarations, such as `SimpleFieldSchema`.
  CustomField(const Schema& kind, CustomSchema& owner, const QString& name, Type type);
  ~CustomField() override;

  const QString& GetName() const { return name_; }
  const QString& GetTypeName() const { return typeName_; }
  /// The text for people.
  const QString& GetDisplayName() const { return displayName_; }
  void SetDisplayName(const QString& text);
  /// The meaning of the type's name.
  Type GetType() const;
  int GetState() const { return state_; }
  CustomSchema* GetOwnerSchema() const { return ownerSchema_; }
  /// What instances hold the value by; null while there's none.
  const Field* GetField() const { return field_.get(); }

  /// A text as a number of a type; `ok` is false, and the value 0, for one that isn't.
  static double GetValueAsDouble(Type type, const QString& text, bool* ok);

  void NotifyFieldChanged(const Field& field) override;

protected:
  CustomField(const Schema& kind, const KmlId& id, const QString& baseUrl);

  void EnterPlace(SchemaObject& owner, int index) override;
  void LeavePlace(SchemaObject& owner) override;

private:
  friend class CustomFieldSchema;
  friend class CustomSchema;

  /// True when there is a field. None comes while the class has instances.
  bool CreateField();
  void DropField();

  QString name_;
  QString typeName_;
  QString displayName_;
  int state_ = 0;
  CustomSchema* ownerSchema_ = nullptr;
  std::unique_ptr<Field> field_;
};

/// A declaration of the kind whose class is `Kind`.
template <class Kind> class KESTAN_EXPORT CustomFieldOf final : public CustomField {
public:
  using ClassSchema = Kind;
  CustomFieldOf(const KmlId& id, const QString& baseUrl);
  ~CustomFieldOf() override;
};

} // namespace vorrel::kestan
