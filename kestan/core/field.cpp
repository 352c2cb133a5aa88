#include "kestan/core/field.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

// Marks of GetNamespaceFlags for child classes outside the KML and extension namespaces.
constexpr unsigned kWmsNamespace = 0x200;
constexpr unsigned kAtomNamespace = 0x400;
constexpr unsigned kNamespaceFlags =
    Field::kKmlNamespace | Field::kExtNamespace | kWmsNamespace | kAtomNamespace;

Namespace NamespaceFromFlags(unsigned flags, const Schema& schema) {
  if (flags & Field::kKmlNamespace)
    return Namespace::kKml;
  if (flags & Field::kExtNamespace)
    return Namespace::kExt;
  return schema.GetNamespace();
}

} // namespace

Field::Field(Schema& schema, const QString& name, unsigned offset, Type type, unsigned flags,
             unsigned size, unsigned align, const Schema* objSchema)
    : schema_(&schema), name_(name), ns_(NamespaceFromFlags(flags, schema)), offset_(offset),
      flags_(flags), type_(type), isPlaced_(type != kHidden && offset == 0) {
  key_ = Schema::MakeKey(name_, ns_);
  tag_ = GetPrefixedElem().toUtf8();
  init(size, align, objSchema);
}

Field::~Field() = default;

void Field::init(unsigned size, unsigned align, const Schema* objSchema) {
  if (schema_->HasInstances()) {
    type_ = kHidden;
    return;
  }
  TakePlace(size, align);
  schema_->AddField(*this, objSchema);
}

void Field::TakePlace(unsigned size, unsigned align) {
  if (HasFlag(kProxy))
    return;
  if (isPlaced_)
    offset_ = (schema_->size_ + align - 1) / align * align;
  schema_->size_ = std::max(schema_->size_, offset_ + size);
}

unsigned Field::GetNamespaceFlags(const Schema& childSchema, unsigned flags) {
  flags &= ~kNamespaceFlags;
  switch (childSchema.GetNamespace()) {
  case Namespace::kExt:
    return flags | kExtNamespace;
  case Namespace::kWms:
    return flags | kWmsNamespace;
  case Namespace::kAtom:
    return flags | kAtomNamespace;
  default:
    return flags | kKmlNamespace;
  }
}

void Field::merge(SchemaObject&, const SchemaObject&, const SchemaObject&, bool) const {}

bool Field::equals(const SchemaObject&, const SchemaObject&) const { return false; }

int Field::compare(const SchemaObject&, const SchemaObject&) const { return -1; }

FromStringResult Field::fromString(SchemaObject&, const AttributeList*, const NamespaceList*,
                                   const QString&, int, Update*) const {
  return FromStringResult::kUnsupportedData;
}

QString Field::toString(const SchemaObject&, int) const { return QString(); }

bool Field::set(SchemaObject&, SchemaObject*, int) const { return false; }

bool Field::insert(SchemaObject&, SchemaObject*, int) const { return false; }

int Field::getCount(const SchemaObject&) const { return 0; }

void Field::setCount(SchemaObject&, unsigned) const {}

SchemaObject* Field::GetObject(const SchemaObject&, int) const { return nullptr; }

int Field::FindObject(const SchemaObject&, const SchemaObject&) const { return -1; }

bool Field::IsUndefined(const SchemaObject&) const { return false; }

void Field::FindFaults(const SchemaObject&, const AttributeList*, TextFaults&) const {}

void Field::GetForm(const SchemaObject& object, QString& text, QString&) const {
  text = toString(object, -1);
}

bool Field::IsGiven(const SchemaObject& object) const { return object.IsGiven(*this); }

bool Field::SetGiven(SchemaObject& object, bool isGiven) const {
  if (!isGiven)
    object.SetNotGiven(*this);
  return true;
}

void Field::NotifyFieldChanged(SchemaObject& object) const {
  const DeletionDeferrer deferrer;
  if (object.HasKeptValues())
    object.DropKeptValues(*this);
  if (!object.GetBit(kBitDeleting))
    object.NotifyFieldChanged(*this);
}

bool Field::IsSameMember(const Field& other) const {
  return this == &other || (offset_ == other.offset_ && type_ == other.type_ && !name_.isEmpty() &&
                            name_ == other.name_ && HasFlag(kProxy) == other.HasFlag(kProxy));
}

bool Field::KeepsRest(const SchemaObject& object, const Update* update) {
  return !update || object.GetBit(kBitBeingRead);
}

void Field::KeepText(SchemaObject& object, const AttributeList* attrs,
                     const NamespaceList* namespaces, const QString& text) const {
  if (attrs)
    object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
  object.KeepText(*this, text);
}

void Field::SetFlagBit(unsigned flag, bool value) {
  flags_ = value ? flags_ | flag : flags_ & ~flag;
}

char* Field::GetProxyBase(const SchemaObject& object) {
  return static_cast<char*>(object.GetProxyStorage());
}

} // namespace vorrel::kestan
