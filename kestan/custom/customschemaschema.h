#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/custom/customfield.h"
#include "kestan/custom/customschema.h"

namespace vorrel::kestan {

/// The name of a class to derive from.
class KESTAN_EXPORT ParentField final : public StrField {
public:
  using StrField::StrField;

  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
};

class KESTAN_EXPORT CustomSchemaSchema final
    : public SchemaT<CustomSchema, NewInstancePolicy, NoDerivedPolicy> {
public:
  CustomSchemaSchema();

  StrField name{*this, "name", OffsetOf(&CustomSchema::name_), Field::kAttribute};
  /// A copy takes it over by itself.
  ParentField parent{*this, "parent", OffsetOf(&CustomSchema::parent_), Field::kAttribute,
                     Field::kNoCopy};
  ObjArrayField<CustomField> customFields{*this, QString(), CustomField::GetClassSchema(),
                                          OffsetOf(&CustomSchema::customFields_)};
};

extern template class SchemaT<CustomSchema, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
