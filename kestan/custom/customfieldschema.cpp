#include "kestan/custom/customfieldschema.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/simplelistfield.h"
#include "kestan/core/textfaults.h"
#include "kestan/custom/declaredfield.h"
#include "kestan/write/xmlname.h" // what can be an element

namespace vorrel::kestan {

template class SchemaT<CustomField, NoInstancePolicy, NoDerivedPolicy>;
template class SchemaT<CustomFieldOf<SimpleFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<CustomFieldOf<SimpleArrayFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<CustomFieldOf<SimpleListFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<CustomFieldOf<ObjFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<CustomFieldOf<ObjArrayFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;

namespace {

template <class F>
std::unique_ptr<Field> MakeValues(Schema& schema, const QString& name, unsigned flags) {
  return std::make_unique<DeclaredValues<F>>(schema, name, flags);
}

template <class F, class T>
std::unique_ptr<Field> MakeScalar(Schema& schema, const QString& name, unsigned flags) {
  return std::make_unique<DeclaredField<F, T>>(schema, name, flags);
}

/// The fields of a type: a single value, an array and a list.
struct ValueFields {
  using Make = std::unique_ptr<Field> (*)(Schema& schema, const QString& name, unsigned flags);
  Make scalar;
  Make array;
  Make list;
};

template <class T, class E = T, class F = SimpleField<T>>
constexpr ValueFields kFieldsOf = {&MakeScalar<F, T>, &MakeValues<SimpleArrayField<E>>,
                                   &MakeValues<SimpleListField<E>>};

/// By `CustomField::Type`.
constexpr ValueFields kValueFields[] = {
    kFieldsOf<int>,
    kFieldsOf<unsigned int>,
    kFieldsOf<unsigned short>,
    kFieldsOf<unsigned short>,
    kFieldsOf<float>,
    kFieldsOf<double>,
    kFieldsOf<bool, unsigned short>,
    kFieldsOf<QString, QString, StrField>,
    kFieldsOf<QString, QString, StrField>,
    kFieldsOf<QString, QString, StrField>,
    kFieldsOf<QString, QString, StrField>,
    {nullptr, nullptr, nullptr},
};

bool IsOfKind(const SchemaObject& declaration, const Schema& kind) {
  return &declaration.GetSchema() == &kind;
}

bool IsOfObjects(const SchemaObject& declaration) {
  return IsOfKind(declaration, ObjFieldSchema::GetSingleton()) ||
         IsOfKind(declaration, ObjArrayFieldSchema::GetSingleton());
}

const Schema* FindClass(const QString& name) {
  return Schema::FindNamedSchema(name, Namespace::kKml);
}

std::unique_ptr<Field> MakeObjectField(const CustomField& declaration, Schema& schema) {
  const QString& name = declaration.GetName();
  const Schema* const childClass = FindClass(declaration.GetTypeName());
  if (!childClass || !IsNcName(name))
    return nullptr;
  if (IsOfKind(declaration, ObjFieldSchema::GetSingleton()))
    return std::make_unique<ObjField<SchemaObject>>(schema, name, *childClass, 0);
  return std::make_unique<ObjArrayField<SchemaObject>>(schema, name, *childClass, 0);
}

} // namespace

void TypeNameField::FindFaults(const SchemaObject& object, const AttributeList*,
                               TextFaults& faults) const {
  const QString& text = faults.GetText();
  int type = CustomField::kNoType;
  const bool isKnown = IsOfObjects(object) ? FindClass(text) != nullptr
                                           : CustomFieldSchema::GetTypes().GetEnum(text, type) &&
                                                 type != CustomField::kVec2;
  if (!isKnown)
    faults.Add(ReportCode::kUnknownWord);
}

CustomFieldSchema::CustomFieldSchema() : SchemaT("CustomField", nullptr, Namespace::kKml) {}

Enum& CustomFieldSchema::GetTypes() {
  static Enum types({{CustomField::kInt, "int"},
                     {CustomField::kUint, "uint"},
                     {CustomField::kShort, "short"},
                     {CustomField::kUshort, "ushort"},
                     {CustomField::kFloat, "float"},
                     {CustomField::kDouble, "double"},
                     {CustomField::kBool, "bool"},
                     {CustomField::kString, "string"},
                     {CustomField::kWstring, "wstring"},
                     {CustomField::kSharedString, "sharedstring"},
                     {CustomField::kSharedWstring, "sharedwstring"},
                     {CustomField::kVec2, "Vec2"}},
                    false);
  return types;
}

std::unique_ptr<Field> CustomFieldSchema::MakeField(const CustomField& declaration,
                                                    Schema& schema) {
  if (IsOfObjects(declaration))
    return MakeObjectField(declaration, schema);
  const QString& name = declaration.GetName();
  const CustomField::Type type = declaration.GetType();
  if (name.isEmpty() || type == CustomField::kNoType)
    return nullptr;
  const ValueFields& fields = kValueFields[type];
  const ValueFields::Make make =
      IsOfKind(declaration, SimpleArrayFieldSchema::GetSingleton())  ? fields.array
      : IsOfKind(declaration, SimpleListFieldSchema::GetSingleton()) ? fields.list
                                                                     : fields.scalar;
  // Values may have names that no element can have: those stand in data with a schema only.
  return make ? make(schema, name, IsNcName(name) ? 0U : Field::kNoWrite) : nullptr;
}

template <class Kind>
CustomFieldOf<Kind>::CustomFieldOf(const KmlId& id, const QString& baseUrl)
    : CustomField(Kind::GetSingleton(), id, baseUrl) {
  NotifyPostCreate();
}

template <class Kind> CustomFieldOf<Kind>::~CustomFieldOf() { NotifyPreDelete(); }

template class CustomFieldOf<SimpleFieldSchema>;
template class CustomFieldOf<SimpleArrayFieldSchema>;
template class CustomFieldOf<SimpleListFieldSchema>;
template class CustomFieldOf<ObjFieldSchema>;
template class CustomFieldOf<ObjArrayFieldSchema>;

SimpleFieldSchema::SimpleFieldSchema()
    : SchemaT("SimpleField", &CustomField::GetClassSchema(), Namespace::kKml) {}

SimpleArrayFieldSchema::SimpleArrayFieldSchema()
    : SchemaT("SimpleArrayField", &CustomField::GetClassSchema(), Namespace::kExt) {}

SimpleListFieldSchema::SimpleListFieldSchema()
    : SchemaT("SimpleListField", &CustomField::GetClassSchema(), Namespace::kExt) {}

ObjFieldSchema::ObjFieldSchema()
    : SchemaT("ObjField", &CustomField::GetClassSchema(), Namespace::kKml) {}

ObjArrayFieldSchema::ObjArrayFieldSchema()
    : SchemaT("ObjArrayField", &CustomField::GetClassSchema(), Namespace::kKml) {}

} // namespace vorrel::kestan
