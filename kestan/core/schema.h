#pragma once

#include "kestan/core/field.h"
#include "kestan/core/namespace.h"
#include "kestan/host/export.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/host/spinlock.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <atomic>

namespace vorrel::kestan {
class Schema;
}

namespace vorrel {

template <> struct HashMapTraits<QString, kestan::Schema> {
  static bool Equals(const kestan::Schema& schema, const QString& key);
  static bool Equals(const kestan::Schema& a, const kestan::Schema& b);
  static std::uint32_t Hash(const kestan::Schema& schema);
};

} // namespace vorrel

namespace vorrel::kestan {

class CreationObserver;
class KestanCreationParams;
class ObjUrlFieldBase;
class SchemaObject;
struct KmlId;

/// The run-time description of one KML class: its name, namespace, base and fields.
///
/// One singleton a class. Inheritance is by copying: each schema owns flat lists, so that looking
/// a field up needs no walk of the bases. A native schema doesn't change after start-up, so that
/// all threads read it without a lock.
class KESTAN_EXPORT Schema : public MemoryObject, public HashMapEntry<QString, Schema> {
public:
  /// Enters the schema under its name, unless it's `experimental` and experimental KML is off.
  /// A null `base` means `SchemaObject`'s schema. `size` is that of an instance, in bytes.
  Schema(const QString& name, unsigned size, const Schema* base, Namespace ns, bool experimental);
  /// For schemas that stay out of the registry.
  Schema();
  Schema(unsigned size, const Schema* base);
  Schema(const Schema&) = delete;
  Schema& operator=(const Schema&) = delete;
  virtual ~Schema();

  /// Creates and deletes all schema singletons; the library's start and stop.
  static void Initialize(const KestanCreationParams& params);
  static void Shutdown();
  /// Fixed while the library is initialised.
  static bool GetEnableExperimentalFields() { return s_enable_experimental_fields_; }

  /// The schema of an element name; null when there's none.
  static const Schema* FindNamedSchema(const QString& name, Namespace ns);

  virtual const QString& GetName() const { return name_; }
  /// The object of this class with this id, else a new one. The caller gets a reference.
  virtual RefPtr<SchemaObject> FindCreateInstance(const KmlId& id, const QString& baseUrl,
                                                  MemoryManager* manager) const;
  /// Null for an abstract class.
  virtual RefPtr<SchemaObject> CreateInstance(const KmlId& id, const QString& baseUrl,
                                              MemoryManager* manager) const = 0;
  /// An instance of this class with room for the fields of `schema`, which derives from it at run
  /// time. Null unless the class is derivable.
  virtual RefPtr<SchemaObject> CreateInstanceDerived(const Schema& schema, const KmlId& id,
                                                     const QString& baseUrl,
                                                     MemoryManager* manager) const;
  virtual void ConstructCustomFields(SchemaObject& object) const;
  virtual void DestructCustomFields(SchemaObject& object) const;
  virtual void ref() const {}
  virtual void unref() const {}
  virtual bool IsCustom() const { return false; }
  virtual bool IsAbstract() const { return true; }
  virtual bool IsDerivable() const { return false; }

  const Schema* GetBase() const { return base_; }
  Namespace GetNamespace() const { return ns_; }
  const QString& GetKey() const { return key_; }
  /// The name as it's written, with its prefix. Empty for a class that a document makes: its name
  /// may change.
  const QByteArray& GetTag() const { return tag_; }
  unsigned GetSize() const { return size_; }
  bool IsExperimental() const { return experimental_; }

  /// The fields that this schema itself declared, hidden ones excepted.
  const mmvector<Field*>& GetFields() const { return fields_; }
  /// Element and object fields, inherited ones first: the order of writing.
  const mmvector<Field*>& GetSerializedFields() const { return serializedFields_; }
  const mmvector<Field*>& GetObjectFields() const { return objectFields_; }
  const mmvector<Field*>& GetAttributes() const { return attributes_; }
  const mmvector<Field*>& GetUnnamedFields() const { return unnamedFields_; }
  /// The fields that name objects held elsewhere.
  const mmvector<const ObjUrlFieldBase*>& GetReferences() const { return references_; }
  const mmvector<Schema*>& GetDerived() const { return derived_; }

  /// The field that an element or attribute of this name belongs to, or null. For a child that is
  /// named by its own class, `childSchema` (may be null) receives that class, field or no field.
  const Field* FindField(const QString& name, Namespace ns, const Schema** childSchema) const;

  /// True when `other` is this schema or one of its bases.
  bool SubstitutesFor(const Schema& other) const;

  /// Rebuilds this schema on a new base, with its own fields behind those of the base. Nothing
  /// happens while there are instances.
  void SetBase(const Schema* newBase);
  /// A derived schema drops an inherited field that it replaces.
  void RemoveSerializedField(const Field& field);
  /// Takes out a field of this schema's own, of which there may be no instances; the others stay
  /// where they are. For schemas that change at run time, and that none derives from.
  void RemoveField(const Field& field);
  /// True while objects of a class that can change are laid out by it. Fields that come meanwhile
  /// get no place, and are in no list.
  virtual bool HasInstances() const { return false; }

  /// Callers hold the lock of `CreationObserver`. Both reach all derived schemas too.
  void AddCreationObserver(CreationObserver& observer) const;
  void RemCreationObserver(CreationObserver& observer) const;
  const mmvector<CreationObserver*>& GetCreationObservers() const { return creationObservers_; }
  /// The same question without the lock.
  bool HasCreationObservers() const {
    return hasCreationObservers_.load(std::memory_order_relaxed);
  }

  static void NotifyPostCreate(SchemaObject& object);

  /// Registry key of a name: bare in the KML namespace, else behind the namespace's number.
  static QString MakeKey(const QString& name, Namespace ns);

protected:
  /// Rebuilds lists and layout with these fields of the schema's own, in this order.
  void SetFields(mmvector<Field*> own);
  /// Gives the schema another name in whatever registry it is.
  void SetKey(const QString& key) { key_ = key; }

private:
  friend class Field;
  friend class ObjUrlFieldBase;

  void construct(const Schema* base);
  void JoinBase(const Schema* newBase);
  void AddField(Field& field, const Schema* objSchema);
  void AddReference(const ObjUrlFieldBase& field) { references_.push_back(&field); }

  const Schema* base_ = nullptr;
  mmvector<Field*> fields_;
  mmvector<Field*> serializedFields_;
  mmvector<Field*> objectFields_;
  mmvector<Field*> attributes_;
  mmvector<Field*> unnamedFields_;
  mmvector<const ObjUrlFieldBase*> references_;
  QHash<QString, const Field*> fieldsByKey_;
  const unsigned ownSize_ = 0; ///< Without what the schema places itself.
  unsigned size_ = 0;
  QString name_;
  QString key_;
  QByteArray tag_;
  Namespace ns_ = Namespace::kKml;
  unsigned fieldCount_ = 0;
  mutable mmvector<Schema*> derived_;                     ///< Under the lock of schemas.
  std::size_t place_ = 0;                                 ///< In the list of the base.
  mutable mmvector<CreationObserver*> creationObservers_; ///< Under the lock of `CreationObserver`.
  mutable std::atomic<bool> hasCreationObservers_{false};
  bool experimental_ = false;
  bool hidesFields_ = false; ///< A field has taken the place of another one in a list.

  static SpinLock s_lock_;
  static bool s_enable_experimental_fields_;
};

} // namespace vorrel::kestan
