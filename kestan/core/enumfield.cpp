#include "kestan/core/enumfield.h"

#include "kestan/core/enum.h"
#include "kestan/core/textfaults.h"

namespace vorrel::kestan {

EnumField::EnumField(Schema& schema, const QString& name, Enum& values, int defaultValue,
                     unsigned offset, Field::Type type, unsigned flags)
    : SimpleField(schema, name, offset, type, flags), values_(&values) {
  SetDefault(defaultValue);
}

FromStringResult EnumField::fromString(SchemaObject& object, const AttributeList* attrs,
                                       const NamespaceList* namespaces, const QString& text, int,
                                       Update* update) const {
  int value = 0;
  if (!values_->GetEnum(text, value))
    return KeepUnknownName(object, attrs, namespaces, text, update);
  return Store(object, value, attrs, namespaces, update);
}

FromStringResult EnumField::KeepUnknownName(SchemaObject& object, const AttributeList* attrs,
                                            const NamespaceList* namespaces, const QString& text,
                                            const Update* update) const {
  if (KeepsRest(object, update))
    KeepText(object, attrs, namespaces, text);
  return FromStringResult::kUnknownEnumeration;
}

void EnumField::CheckSet(SchemaObject& object, const int& value, unsigned& specified) const {
  if (!values_->getString(value).isEmpty())
    SimpleField::CheckSet(object, value, specified);
}

void EnumField::FindFaults(const SchemaObject&, const AttributeList*, TextFaults& faults) const {
  faults.CheckWords([this](const QString& word) {
    int value = 0;
    return values_->GetSingleEnum(word, value);
  });
}

QString EnumField::toString(const SchemaObject& object, int) const {
  return values_->getString(get(object));
}

} // namespace vorrel::kestan
