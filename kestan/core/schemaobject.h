#pragma once

#include "kestan/core/field.h"
#include "kestan/core/kmlid.h"
#include "kestan/core/objectbits.h"
#include "kestan/host/export.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/inlinedvector.h"
#include "kestan/host/memory.h"
#include "kestan/host/observer.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <memory>

namespace vorrel::kestan {
class SchemaObject;
}

namespace vorrel {

template <> struct HashMapTraits<kestan::KmlId, kestan::SchemaObject> {
  static bool Equals(const kestan::SchemaObject& object, const kestan::KmlId& id);
  static bool Equals(const kestan::SchemaObject& a, const kestan::SchemaObject& b);
  static std::uint32_t Hash(const kestan::SchemaObject& object);
};

} // namespace vorrel

namespace vorrel::kestan {

class ChildMove;
class ConstructionGuard;
class DeletionDeferrer;
class Displacement;
class Document;
class KeptValues;
class ObjectObserver;
class Schema;
class SchemaObjectSchema;
class StrField;
class WriteState;

/// Kind of an event that a client attaches a handler to. Type 1 is sent before an object dies; the
/// others are the client's.
using HandlerType = int;
inline constexpr HandlerType kHandlerPreDelete = 1;

/// What a handler receives. The library fills these members; the rest is the client's.
struct HandlerEvent {
  SchemaObject* sender = nullptr;
  SchemaObject* target = nullptr;
  HandlerType type = 0;
  void* data = nullptr; ///< The client's.
};

using HandlerFunc = bool (*)(HandlerEvent&);

struct KeptField;

/// Objects on the way up of a field change; guards against cycles of owners.
class VisitedObjects : public InlinedVector<SchemaObject*, 16> {
public:
  explicit VisitedObjects(std::uint32_t begun) : revision(begun) {}

  const std::uint32_t revision; ///< The change. What the climb has come by is no older.
  /// What the news is about, which those further up hear of though an observer drops it.
  InlinedVector<RefPtr<SchemaObject>, 4> kept;
};

/// Flags of `WriteKmlFile` and `WriteKmlString`.
enum WriteFlag : unsigned {
  kWriteNoHint = 1,  ///< Leave the `hint` attribute of the root out.
  kWriteNoHoist = 2, ///< Don't wrap the object in a `Document` with its styles and schemas.
  /// Pack only files at or below the folder of the object's document, or in its archive.
  kWriteOwnFilesOnly = 4,
  /// URLs keep their text, except in an archive. They hold where the output comes to lie in the
  /// place of the object's document.
  kWriteRelativeUrls = 8,
};

/// Base of every KML object: identity, ownership, state bits, preserved unknown content.
///
/// Objects are reference counted and made only through their `Schema`. An object has one owner,
/// whose field holds the counted reference; the pointer to the owner is plain. It belongs to the
/// thread whose `ThreadContext` holds it until that context is merged; only the reference count is
/// safe across threads.
///
/// An object dies with its last reference, and what only it held dies with it: all of that is
/// announced, owners first, before any of its memory goes. From its announcement on
/// (`kBitDeleting`) an object is found, watched, owned and told no more. A child that loses its
/// owner otherwise is told so, or dies at once.
class KESTAN_EXPORT SchemaObject : public MemoryObject,
                                   public AtomicReferent,
                                   public HashMapEntry<KmlId, SchemaObject> {
public:
  using ClassSchema = SchemaObjectSchema;
  static const Schema& GetClassSchema();

  SchemaObject(const SchemaObject&) = delete;
  SchemaObject& operator=(const SchemaObject&) = delete;
  ~SchemaObject() override;

  /// The object with this id in the calling thread's hash, or null. Takes no reference.
  static SchemaObject* find(const KmlId& id);
  static SchemaObject* find(const QString& url, const QString& id);

  /// The id of `given` with a fresh "runtime://clone" URL that no object holds.
  static KmlId GetUniqueRuntimeId(const KmlId& given);
  /// `url` against `base` by the rules of `GGetUrlType`.
  static QString MakeAbsoluteUrl(const QString& base, const QString& url);
  static KmlId MakeAbsoluteId(const QString& base, const QString& id);
  /// "root://" in front becomes "runtime://"; any other text comes back unchanged.
  static QString MakeRuntimeUrl(const QString& url);
  /// Gives an object without an id one that is made from `stem` and free in its document.
  void AssignPermanentUniqueId(const QString& stem);

  KmlId GetKmlId() const { return KmlId(id_, url_); }
  const QString& GetId() const { return id_; }
  const QString& GetUrl() const { return url_; }
  /// URL against which relative references of this object resolve.
  const QString& GetBaseUrl() const { return baseUrl_; }

  const Schema& GetSchema() const { return *schema_; }
  /// Name of the class.
  const QString& getType() const;
  bool isOfType(const Schema& schema) const;
  bool isOfType(const QString& name) const;
  Namespace GetNamespace() const;
  /// The element's name, with the extension prefix for a class outside the KML namespace.
  QString GetPrefixedName() const;
  const Field* FindField(const QString& name, Namespace ns, const Schema** childSchema) const;

  bool GetBit(BitID bit) const { return ((bits_[bit / 32] >> (bit % 32)) & 1U) != 0; }
  void SetBit(BitID bit, bool value) {
    const std::uint32_t mask = 1U << (bit % 32);
    bits_[bit / 32] = value ? bits_[bit / 32] | mask : bits_[bit / 32] & ~mask;
  }

  /// Offset of the word with the bits below 32, for the `BitField`s of derived classes.
  static unsigned GetBitsOffset() { return OffsetOf(&SchemaObject::bits_); }

  /// Value of the change counter at the last change in this object or below it.
  std::uint32_t GetRevision() const { return revision_; }
  void SetRevision(std::uint32_t revision) { revision_ = revision; }
  unsigned GetAccess() const { return access_; }
  void SetAccess(unsigned access) { access_ = static_cast<std::uint16_t>(access); }
  /// Index of the hint target, 0xFFFF for none.
  unsigned GetHintTarget() const { return hintTarget_; }
  void SetHintTarget(unsigned target) { hintTarget_ = static_cast<std::uint16_t>(target); }
  /// Position in the owner's array field, or -1.
  int GetArrayIndex() const { return arrayIndex_; }
  void SetArrayIndex(int index) { arrayIndex_ = index; }

  // Handlers of the client.
  void SetHandlerFunc(HandlerType type, HandlerFunc function);
  HandlerFunc GetHandlerFunc(HandlerType type) const;
  bool HasHandler(HandlerType type) const { return GetHandlerFunc(type) != nullptr; }
  void ClearHandlerMap();
  /// The handler's answer; true without a handler.
  bool OnHandler(HandlerType type, HandlerEvent& event);
  bool OnHandler(SchemaObject* sender, HandlerType type, HandlerEvent& event);

  // Preserved content that no schema understands.
  bool HasUnknownData() const { return unknownData_ != nullptr; }
  const UnknownData* GetUnknownData() const { return unknownData_.get(); }
  /// Creates the block on demand.
  UnknownData& unknownData();
  void SetUnknownAttrs(const QString& text, const NamespaceList* namespaces);
  void SetUnknownAttrs(const AttributeList& list, const NamespaceList* namespaces);
  void SetUnknownFields(const QString& text, const NamespaceList* namespaces);
  void SetUnknownFieldAttrs(const Field& field, const AttributeList& list,
                            const NamespaceList* namespaces);
  /// Removes the stored text, and gives it to a field that has none.
  QString TakeUnknownFieldAttrs(const Field& field);
  void PutUnknownFieldAttrs(const Field& field, const QString& text);
  /// The stored text; null when there's none.
  QString GetUnknownFieldAttrs(const Field& field) const;

  // What a document gave to fields beyond what they hold: see `KeptValues`.
  bool HasKeptValues() const { return unknownData_ && unknownData_->kept; }
  /// Keeps a text that gave the field no value: it's written in its place until the field is set.
  void KeepText(const Field& field, const QString& text);
  /// The same for an entry of an array field.
  void KeepEntry(const Field& field, int index, const QString& text);
  /// Keeps the attributes of an element for a child that held none.
  void KeepEmptyElement(const Field& field, const QString& attrs);
  /// Forgets what was kept for the field; setting it does so.
  void DropKeptValues(const Field& field);
  /// True when something is kept for the field, or for another spelling of its member.
  bool HasKeptValue(const Field& field) const;
  /// What is kept for just this field, or null.
  const KeptField* GetKeptField(const Field& field) const;
  /// Copies of what is kept for the field and for other spellings of its member, which hold no
  /// objects where it's a value.
  mmvector<KeptField> GetKeptFields(const Field& field) const;
  /// Keeps such copies, in the place of what is kept now.
  void PutKeptFields(const Field& field, const mmvector<KeptField>& kept);
  /// True when the field's element is written whatever the field holds: it has unknown attributes,
  /// or what it has displaced would count without it.
  bool KeepsElement(const Field& field) const {
    return unknownData_ && (!GetUnknownFieldAttrs(field).isNull() || GetKeptField(field));
  }
  /// True for a child that has to be written even though it says nothing, for the same reason.
  bool HasDisplacedOthers() const;

  /// Writes the object to a file, `flags` from `WriteFlag`: KML, or with a name that ends in ".kmz"
  /// an archive of the document with the local files that it refers to. The old file stays as it
  /// was until the new one is complete. References mean what they meant: those that would lead
  /// elsewhere from the new place come absolute.
  ///
  /// Answers the failure text, empty when all went well. A file that can't be read doesn't travel,
  /// and is no failure: `unreadableFiles`, when given, gets their paths, and `outsideFiles` those
  /// that `kWriteOwnFilesOnly` left out. The caller keeps the tree still meanwhile.
  QString WriteKmlFile(const QString& path, unsigned flags = 0,
                       QStringList* unreadableFiles = nullptr,
                       QStringList* outsideFiles = nullptr) const;
  /// The same into `bytes`, as KML.
  QString WriteKmlString(QByteArray& bytes, unsigned flags = 0) const;

  /// Appends each object of the class, this one included, depth first, parents before children.
  void FindBySchema(const Schema& schema, mmvector<SchemaObject*>& out) const;
  /// True when somebody hears of its changes.
  bool HasObservers() const { return observers_.IsHeard(); }
  bool UpdateInheritedVisibility();
  void UpdateInheritedShouldNotifySubFieldChanged();
  void SetInheritedShouldNotifySubFieldChanged(bool value);

  // The reader tells when the object's element opens and when it has ended. In a tree that is being
  // read nothing is handed down: nobody sees it, and each further element may change it. It goes
  // down once, when the outermost element has ended.
  void BeginReading() {
    SetBit(kBitBeingRead, true);
    SetBit(kBitWasRead, true);
  }
  void EndReading();
  /// The same without the word to what lies below.
  void StopReading();

  // Operations that classes replace, in the order of their slots.
  void orphaned() override;
  /// An object without an owner no longer counts as visible.
  virtual void RequireParentInheritedVisibility(bool update);
  /// A new object of the same class with a fresh run-time id; null for a class without instances.
  /// `excluded` fields, which may be null, keep their defaults.
  virtual RefPtr<SchemaObject> clone(const KmlId& id, bool deep,
                                     const mmvector<const Field*>* excluded) const;
  virtual RefPtr<SchemaObject> clone(bool deep, const mmvector<const Field*>* excluded) const;
  virtual void copy(const SchemaObject& src, bool deep, const mmvector<const Field*>* excluded);
  /// Each field takes `b`'s value where `b` marks it as specified, else `a`'s.
  virtual void merge(const SchemaObject& a, const SchemaObject& b);
  /// One bit a field that was given explicitly; 0 for classes without such a mask.
  virtual unsigned GetFieldsSpecified() const { return 0; }
  virtual void* GetProxyStorage() const { return nullptr; }
  virtual QString toString() const { return QString(); }
  virtual void WriteKml(WriteState& state) const;
  virtual void SetEditActive(bool active) { SetBit(kBitEditActive, active); }
  virtual bool GetEditActive() const { return GetBit(kBitEditActive); }
  /// The target of a URL field has arrived; null when it can't be had.
  virtual void OnUrlLoad(const StrField& field, SchemaObject* loaded);
  /// For an owner that holds the object, in a field or by a reference; another one is none.
  virtual void AddOwner(SchemaObject& newOwner);
  virtual void AddArrayOwner(SchemaObject& newOwner, int index);
  virtual void RemOwner(SchemaObject& former);
  virtual void RemArrayOwner(SchemaObject& former, int index);
  virtual bool HasOwner(const SchemaObject& object) const { return owner_ == &object; }
  virtual int GetOwnerCount() const { return owner_ ? 1 : 0; }
  virtual SchemaObject* GetOwner(int index) const;
  /// The nearest document on the way up, which may be the object itself; null where an object on
  /// the way has several owners.
  virtual Document* GetOwnerDocument() const;
  /// Another owner has taken `child`: empties its slot here.
  virtual void stolen(SchemaObject& child);
  /// Takes the text of the object's own element.
  virtual FromStringResult fromString(const QString& text);
  /// The field that holds `child`, or null; `index`, when given, receives the place.
  virtual const Field* FindObject(const SchemaObject& child, int* index) const;
  /// Every change of a field ends here.
  virtual void NotifyFieldChanged(const Field& field);
  virtual void NotifySubFieldChanged(SchemaObject& changed, const Field& field,
                                     VisitedObjects& visited);
  virtual void NotifyInheritedVisibilityChanged() {}
  virtual void NotifyInheritedShouldNotifySubFieldChanged() {}
  virtual void NotifyOwnerChanged();
  virtual void NotifyPostCreate();
  /// Copies what a class holds outside its fields.
  virtual void CopyNonFieldStuff(const SchemaObject& src);
  virtual QString ComposeHintString() const;
  virtual void WriteKmlStartTag(WriteState& state, bool inlineText) const;
  virtual void WriteKmlEndTag(WriteState& state, bool inlineText) const;
  virtual void WriteKmlFields(WriteState& state) const;
  virtual void WriteKmlFieldsSpecified(WriteState& state, unsigned mask) const;
  virtual void WriteStylesAndSchemas(WriteState& state, const QString& path) const;
  virtual double GetInterpolant(int i, int a, int b) const;
  /// The owner in whose field the object stands. The others, of a class with several, refer to it.
  virtual SchemaObject* GetHome() const { return owner_; }
  /// True for a class of which objects have several owners, and tell each of them of changes.
  virtual bool HasManyOwners() const { return false; }
  /// The object itself, when it's a document.
  virtual Document* AsDocument() const { return nullptr; }
  /// Brings those below up to date with all that they inherit.
  virtual void HandDown();
  /// Whether a field counts as given, which most classes take no note of; and the end of that.
  virtual bool IsGiven(const Field&) const { return true; }
  virtual void SetNotGiven(const Field&) {}
  /// The field that takes the text of the object's own element; null for a class without one.
  virtual const Field* GetTextField() const { return nullptr; }

  void WriteUnknownAttrs(WriteState& state) const;
  void WriteUnknownFieldAttrs(WriteState& state, const Field& field) const;
  void WriteUnknownFields(WriteState& state) const;
  /// Writes what is kept for the field, and then the field: what documents of this class hold for
  /// it.
  void WriteField(const Field& field, WriteState& state) const;
  void WriteKept(const Field& field, WriteState& state) const;
  /// The first part of that, but for a text in the field's place.
  void WriteDisplaced(const Field& field, WriteState& state) const;

protected:
  SchemaObject(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// End of a constructor with a choice: announces the object, or marks it as one that nobody hears
  /// of.
  void FinishCreation(bool notify);

  /// From now on the object is found under this id. Sends no notice.
  void SetKmlId(const KmlId& id);

  /// Whether a change of what the object hands down goes down now; it's made up for if it doesn't.
  bool HandsDown();

  /// First half of the destruction, with the last reference: announces the end while the object is
  /// whole. The destructor of each concrete class calls it too, for those that nobody counts. A
  /// second call does nothing.
  void NotifyPreDelete();

  /// Nobody counts the object any more. True when somebody who has use for it counts it from now
  /// on: then it lives.
  virtual bool FindKeeper() { return false; }
  /// The object dies: whoever points at it without holding it forgets it.
  virtual void LeaveOwners() {}

  // The two ends of a stay in a field. They tell nobody: a `ChildMove` does, once all is in place.

  virtual void EnterPlace(SchemaObject& owner, int index);
  virtual void LeavePlace(SchemaObject& owner);
  /// Drops `child` from the field here in which it stands. Answers the field.
  virtual const Field* Vacate(SchemaObject& child);

private:
  friend class SchemaObjectSchema;
  friend class ChildMove;
  friend class ConstructionGuard;
  friend class DeletionDeferrer;
  friend class ObjectObserver;
  friend class CreationObserver;
  friend class Displacement;
  friend class StyleSelector; // has several owners
  friend class IdField;       // changes the id

  using HandlerMap = std::map<HandlerType, HandlerFunc>;
  using Orphans = InlinedVector<SchemaObject*, 16>;

  void Announce(Orphans& orphans);
  void init(const KmlId& id, const QString& baseUrl);
  void AddToObjectHash(std::uint32_t hashValue);
  /// Enters the object under an id that has changed.
  void Rehash();
  KeptValues& keptValues();
  /// Takes out a displaced object; false when it isn't there.
  bool RemoveDisplaced(const SchemaObject& child);
  void TakeKeptValues(const mmvector<KeptField>& kept, bool deep,
                      const mmvector<const Field*>* excluded, bool fresh);
  void CopyFields(SchemaObject& dst, bool deep, const mmvector<const Field*>* excluded,
                  bool fresh) const;
  /// For a clone inside of another one.
  void CloneFields(SchemaObject& dst, bool deep, const mmvector<const Field*>* excluded) const;

  SchemaObject* owner_ = nullptr;
  const Schema* schema_;
  ObserverList observers_;
  std::uint32_t revision_ = 0;
  QString id_;
  QString url_;
  QString baseUrl_;
  std::unique_ptr<HandlerMap> handlers_;
  std::uint32_t bits_[2];
  std::uint16_t access_ = 2;
  std::uint16_t hintTarget_ = 0xFFFF;
  std::unique_ptr<UnknownData> unknownData_;
  int arrayIndex_ = -1;
};

} // namespace vorrel::kestan

namespace vorrel {

inline bool
HashMapTraits<kestan::KmlId, kestan::SchemaObject>::Equals(const kestan::SchemaObject& object,
                                                           const kestan::KmlId& id) {
  return object.GetUrl() == id.url && object.GetId() == id.id;
}

inline bool
HashMapTraits<kestan::KmlId, kestan::SchemaObject>::Equals(const kestan::SchemaObject& a,
                                                           const kestan::SchemaObject& b) {
  return a.GetUrl() == b.GetUrl() && a.GetId() == b.GetId();
}

inline std::uint32_t
HashMapTraits<kestan::KmlId, kestan::SchemaObject>::Hash(const kestan::SchemaObject& object) {
  return hash<kestan::KmlId>()(object.GetKmlId());
}

} // namespace vorrel
