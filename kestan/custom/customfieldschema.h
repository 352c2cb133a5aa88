#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/custom/customfield.h"

#include <memory>

namespace vorrel::kestan {

/// The type of a declaration: a word for a value, the name of a class for an object.
class KESTAN_EXPORT TypeNameField final : public StrField {
public:
  using StrField::StrField;

  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
};

class KESTAN_EXPORT CustomFieldSchema final
    : public SchemaT<CustomField, NoInstancePolicy, NoDerivedPolicy> {
public:
  CustomFieldSchema();

  /// The names of `CustomField::Type`.
  static Enum& GetTypes();
  /// The field that a declaration with name and type stands for; null when there's none.
  static std::unique_ptr<Field> MakeField(const CustomField& declaration, Schema& schema);

  StrField name{*this, "name", OffsetOf(&CustomField::name_), Field::kAttribute};
  TypeNameField type{*this, "type", OffsetOf(&CustomField::typeName_), Field::kAttribute};
  StrField displayName{*this, "displayName", OffsetOf(&CustomField::displayName_), Field::kElement};
};

extern template class SchemaT<CustomField, NoInstancePolicy, NoDerivedPolicy>;

/// One value.
class KESTAN_EXPORT SimpleFieldSchema final
    : public SchemaT<CustomFieldOf<SimpleFieldSchema>, NewInstancePolicy, NoDerivedPolicy> {
public:
  SimpleFieldSchema();
};

/// An array of values, one element for each.
class KESTAN_EXPORT SimpleArrayFieldSchema final
    : public SchemaT<CustomFieldOf<SimpleArrayFieldSchema>, NewInstancePolicy, NoDerivedPolicy> {
public:
  SimpleArrayFieldSchema();
};

/// A list of values in one text.
class KESTAN_EXPORT SimpleListFieldSchema final
    : public SchemaT<CustomFieldOf<SimpleListFieldSchema>, NewInstancePolicy, NoDerivedPolicy> {
public:
  SimpleListFieldSchema();
};

/// A child object.
class KESTAN_EXPORT ObjFieldSchema final
    : public SchemaT<CustomFieldOf<ObjFieldSchema>, NewInstancePolicy, NoDerivedPolicy> {
public:
  ObjFieldSchema();
};

/// An array of child objects.
class KESTAN_EXPORT ObjArrayFieldSchema final
    : public SchemaT<CustomFieldOf<ObjArrayFieldSchema>, NewInstancePolicy, NoDerivedPolicy> {
public:
  ObjArrayFieldSchema();
};

extern template class SchemaT<CustomFieldOf<SimpleFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<CustomFieldOf<SimpleArrayFieldSchema>, NewInstancePolicy,
                              NoDerivedPolicy>;
extern template class SchemaT<CustomFieldOf<SimpleListFieldSchema>, NewInstancePolicy,
                              NoDerivedPolicy>;
extern template class SchemaT<CustomFieldOf<ObjFieldSchema>, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<CustomFieldOf<ObjArrayFieldSchema>, NewInstancePolicy,
                              NoDerivedPolicy>;

} // namespace vorrel::kestan
