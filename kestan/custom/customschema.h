#pragma once

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <memory>

namespace vorrel::kestan {

class CustomField;
class CustomSchemaSchema;

/// A class that a document declares for itself: an object of the document, and the `Schema` by
/// which the instances of the class are made, read, written and cloned.
///
/// A class without a parent has instances of `CustomSchemaObject`, one with a parent those of a
/// library class that can be derived from, both with room for the declared fields behind their
/// members. Instances keep their class in memory. As long as there are any, the class stays laid
/// out as it is: what is declared anew holds once they are gone.
///
/// Belongs to its thread as any object; instances may end on other ones.
class KESTAN_EXPORT CustomSchema final : public SchemaObject, public Schema {
public:
  using ClassSchema = CustomSchemaSchema;
  static const Schema& GetClassSchema();
  CustomSchema(const KmlId& id, const QString& baseUrl);
  ~CustomSchema() override;

  using SchemaObject::operator new;
  using SchemaObject::operator delete;

  /// The document's URL, "#" and the name: the key of a class among those of its thread.
  static QString GetCacheName(const QString& url, const QString& name);
  /// The class of that name in a document, the latest one with the URL; null when there's none.
  /// Knows those of the calling thread, which a merge hands to the main one.
  static CustomSchema* FindNamedCustomSchema(const QString& url, const QString& name);

  /// The name of the class, as the document has it.
  const QString& GetName() const override { return name_; }
  void SetName(const QString& name);
  /// The name of a library class to derive from, or empty.
  const QString& GetParent() const { return parent_; }
  void SetParent(const QString& parent);

  const mmvector<RefPtr<CustomField>>& GetCustomFields() const { return customFields_; }
  /// The first declaration of the name, or null.
  CustomField* GetCustomField(const QString& name) const;
  /// True when the other one has the same parent, and the same fields in the same order.
  bool DeclaresSame(const CustomSchema& other) const;

  bool IsCustom() const override { return true; }
  bool IsAbstract() const override { return false; }
  bool HasInstances() const override { return instances_.load(std::memory_order_acquire) > 0; }
  RefPtr<SchemaObject> CreateInstance(const KmlId& id, const QString& baseUrl,
                                      MemoryManager* manager) const override;
  void ConstructCustomFields(SchemaObject& object) const override;
  void DestructCustomFields(SchemaObject& object) const override;
  /// Of the object, which is the class as well.
  void ref() const override { SchemaObject::ref(); }
  void unref() const override { SchemaObject::unref(); }

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

protected:
  bool FindKeeper() override;

private:
  friend class CustomField;
  friend class CustomSchemaSchema;

  /// The layout no longer is what is declared.
  void SetLoose() { isLoose_ = true; }
  /// A declaration no longer has this field.
  void TakeBack(std::unique_ptr<Field> field);
  void ForgetNames() { byName_.clear(); }
  /// Lays out what is declared, unless there are instances.
  void Settle();
  const Schema& FindParent() const;
  void EnterUnderName();
  void LeaveNames();
  bool IsOfOtherThread() const;

  QString name_;
  QString parent_;
  mmvector<RefPtr<CustomField>> customFields_;
  mmvector<std::unique_ptr<Field>> retired_;    ///< Without a declaration, but with instances.
  mutable QHash<QString, CustomField*> byName_; ///< Of a class with many; empty until asked.
  mutable std::atomic<int> instances_{0};
  bool isLoose_ = false;
};

} // namespace vorrel::kestan
