#pragma once

#include "kestan/core/namespace.h"
#include "kestan/core/unknowndata.h"
#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstring>

namespace vorrel::kestan {

class Schema;
class SchemaObject;
class TextFaults;
class Update;
class WriteState;
struct KeptValue;

/// What became of a text that was handed to a field or an object.
enum class FromStringResult {
  kOk = 0,
  kUnsupportedData = 1,
  kOutOfRange = 2,
  kUnknownEnumeration = 3,
  kSecurityViolation = 4, ///< An update isn't allowed to change the object.
};

/// Offset of a data member from the start of its object.
///
/// A pointer to data member holds just that number (Itanium C++ ABI, 2.3), and every schema class
/// has `SchemaObject` as its first base, so the offset holds for derived classes too.
template <class C, class M> unsigned OffsetOf(M C::*member) {
  std::ptrdiff_t offset = 0;
  static_assert(sizeof(offset) == sizeof(member));
  std::memcpy(&offset, &member, sizeof(offset));
  return static_cast<unsigned>(offset);
}

/// One member of one KML class, and the one place where reading, writing, copying, comparing and
/// updating it are implemented.
///
/// Fields are members of their class's schema. Each operation takes the object as an argument.
/// Immutable once the schema is built, so that all threads share them; the objects have the rules
/// of `SchemaObject`.
class KESTAN_EXPORT Field {
public:
  enum Type {
    kElement = 0,   ///< A child element, or with an empty name the element's own text.
    kAttribute = 1, ///< An XML attribute.
    kObject = 2,    ///< A child object or an array of them.
    kHidden = 3,    ///< No KML form; in no list of the schema.
  };

  enum Flag : unsigned {
    kNoWrite = 0x01,    ///< Never written; an object field that doesn't own its object.
    kHasDefault = 0x02, ///< A value equal to the default isn't written.
    kHasMin = 0x04,
    kHasMax = 0x08,
    kNoCopy = 0x10,         ///< Passed over by clone, copy and merge.
    kProxy = 0x20,          ///< The member lies in `SchemaObject::GetProxyStorage()`.
    kUpdateAnywhere = 0x40, ///< An update may change the field from any URL.
    kKmlNamespace = 0x80,   ///< In the KML namespace, whatever the schema's.
    kExtNamespace = 0x100,  ///< In the extension namespace, whatever the schema's.
  };

  /// Enters the field into `schema`. An `offset` of 0 lets the schema place the member behind the
  /// present end of its objects.
  Field(Schema& schema, const QString& name, unsigned offset, Type type, unsigned flags,
        unsigned size, unsigned align, const Schema* objSchema = nullptr);
  Field(const Field&) = delete;
  Field& operator=(const Field&) = delete;

  /// Flags of an object field, whose namespace follows its child's class.
  static unsigned GetNamespaceFlags(const Schema& childSchema, unsigned flags);

  const Schema& GetSchema() const { return *schema_; }
  /// Element or attribute name. Empty for a child that is named by its own class, and for the
  /// element's own text.
  const QString& GetName() const { return name_; }
  /// Full name as an element, with its prefix, in UTF-8.
  const QByteArray& GetTag() const { return tag_; }
  /// Name behind the namespace's number, bare in the KML namespace.
  const QString& GetKey() const { return key_; }
  Namespace GetNamespace() const { return ns_; }
  unsigned GetOffset() const { return offset_; }
  unsigned GetFlags() const { return flags_; }
  bool HasFlag(Flag flag) const { return (flags_ & flag) != 0; }
  Type GetType() const { return type_; }
  /// Position among the schema's fields, inherited ones included.
  unsigned GetIndex() const { return index_; }
  /// Bit of this field in a mask of specified fields: the index modulo 32.
  unsigned GetMaskBit() const { return 1U << (index_ & 31U); }

  virtual unsigned getSize() const = 0;
  virtual unsigned GetAlign() const = 0;
  /// Builds and destroys the member in place; for members that the schema placed.
  virtual void construct(SchemaObject& object) const = 0;
  virtual void destruct(SchemaObject& object) const = 0;
  virtual bool IsArray() const { return false; }
  virtual bool IsNumeric() const { return false; }
  virtual bool IsExperimental() const { return false; }
  virtual void WriteKml(const SchemaObject& object, WriteState& state) const = 0;
  /// Makes `dst`'s member equal to `src`'s, reusing what `dst` holds.
  virtual void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const = 0;
  /// Fills a fresh `dst`.
  virtual void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const = 0;
  /// `dst` takes `b`'s value when `useB`, else `a`'s.
  virtual void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                     bool useB) const;
  virtual bool equals(const SchemaObject& a, const SchemaObject& b) const;
  /// Negative, 0 or positive.
  virtual int compare(const SchemaObject& a, const SchemaObject& b) const;
  /// Parses KML text. `attrs` and `namespaces` may be null. With an `update` the object isn't
  /// changed: the update records an edit.
  virtual FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                                      const NamespaceList* namespaces, const QString& text,
                                      int index, Update* update) const;
  /// The value as text; `index` picks an array element.
  virtual QString toString(const SchemaObject& object, int index) const;
  /// Object fields: stores, or inserts, a child. False when it's refused.
  virtual bool set(SchemaObject& owner, SchemaObject* child, int index) const;
  virtual bool insert(SchemaObject& owner, SchemaObject* child, int index) const;
  /// Class of the child; null for a value.
  virtual const Schema* GetObjSchema() const { return nullptr; }
  virtual int getCount(const SchemaObject& object) const;
  virtual void setCount(SchemaObject& object, unsigned count) const;
  /// The child as a plain pointer.
  virtual SchemaObject* GetObject(const SchemaObject& object, int index) const;
  /// Index of the child, or -1.
  virtual int FindObject(const SchemaObject& owner, const SchemaObject& child) const;
  /// True when the member has no value, and so isn't written.
  virtual bool IsUndefined(const SchemaObject& object) const;
  /// 1 int, 2 float, 3 double, 4 string, else 0.
  virtual int GetDataType() const { return 0; }
  virtual ~Field();
  /// True when `fromString` may keep a reference to its text. Where it's false, a caller may hand
  /// over text that lies in a buffer of its own.
  virtual bool KeepsText() const { return true; }
  /// Notes what of a text isn't in the value that `fromString` has made of it, the attributes
  /// included. For those who ask for findings: reading itself doesn't look back.
  virtual void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                          TextFaults& faults) const;
  /// Prints the bare value.
  virtual void WriteKmlString(const SchemaObject& object, WriteState& state) const;
  /// The field in which a child ends up that this one is given.
  virtual const Field& GetPlaceFor(const SchemaObject&) const { return *this; }
  /// True where each further element of a document adds a value, and false where it replaces the
  /// one before.
  virtual bool IsRepeatable() const { return IsArray(); }
  /// The element that would give the object its present value: its text without escapes, and what
  /// is needed of attributes. `attrs` come in as the unknown ones of the present element.
  virtual void GetForm(const SchemaObject& object, QString& text, QString& attrs) const;

  /// Whether the field counts as given, beyond its value; true where the object takes no note.
  virtual bool IsGiven(const SchemaObject& object) const;
  /// Notes it ahead of a new value, which does so by itself for most fields, or that it isn't given
  /// after all. False when another element gives the member its value for now.
  virtual bool SetGiven(SchemaObject& object, bool isGiven) const;

  /// Tells the object that this member was set. What a document gave it besides is forgotten. What
  /// is dying tells nothing.
  void NotifyFieldChanged(SchemaObject& object) const;
  /// True for this field, and for one with the same member and the same name in another namespace.
  bool IsSameMember(const Field& other) const;
  /// The name with the prefix that it needs as an element, or as an attribute of `object`.
  QString GetPrefixedElem() const;
  QString GetPrefixedAttr(const SchemaObject& object) const;
  void WriteUnknownFieldAttrs(WriteState& state, const SchemaObject& object) const;

  /// Writes what has been displaced from the field, or stands in its place.
  void WriteKept(const SchemaObject& object, const KeptValue& value, WriteState& state) const;

protected:
  void SetFlagBit(unsigned flag, bool value);

  /// Start of the storage that holds the member.
  char* GetObjectBase(const SchemaObject& object) const {
    // SchemaObject is the first base of every class, so that its address is that of the whole
    // object. Members are reached for reading and writing alike.
    return HasFlag(kProxy) ? GetProxyBase(object)
                           : reinterpret_cast<char*>(const_cast<SchemaObject*>(&object));
  }
  template <class T> T& Member(const SchemaObject& object, unsigned offset) const {
    return *reinterpret_cast<T*>(GetObjectBase(object) + offset);
  }
  template <class T> T& Member(const SchemaObject& object) const {
    return Member<T>(object, offset_);
  }

  /// Whether what a text leaves behind beyond a value may be kept with the object. An update keeps
  /// such things only with what it makes itself.
  static bool KeepsRest(const SchemaObject& object, const Update* update);

  /// Keeps a text that gives no value, with the attributes of its element.
  void KeepText(SchemaObject& object, const AttributeList* attrs, const NamespaceList* namespaces,
                const QString& text) const;

  /// Writes the member as element or attribute by the common rule of value fields.
  /// `differs` says whether the value differs from the default.
  void WriteValue(const SchemaObject& object, WriteState& state, bool differs) const;
  /// `<name>` with indentation and unknown attributes, and `</name>`, by the element's full name.
  void WriteElementStart(const SchemaObject& object, WriteState& state) const;
  void WriteElementEnd(WriteState& state) const;
  /// `<name/>` on a line of its own.
  void WriteEmptyElement(WriteState& state) const;

private:
  friend class Schema;

  void init(unsigned size, unsigned align, const Schema* objSchema);
  /// Makes room for the member in the objects of the schema.
  void TakePlace(unsigned size, unsigned align);
  static char* GetProxyBase(const SchemaObject& object);
  void WriteGivenValue(const SchemaObject& object, WriteState& state) const;

  Schema* schema_;
  QString name_;
  QString key_;
  Namespace ns_;
  unsigned offset_;
  unsigned flags_;
  Type type_;
  unsigned index_ = 0;
  bool isPlaced_; ///< By the schema.
  QByteArray tag_;
};

} // namespace vorrel::kestan
