#include "kestan/core/unknowndata.h"

#include "kestan/core/keptvalues.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/attributevalue.h"

#include <algorithm>

namespace vorrel::kestan {

UnknownNamespace::~UnknownNamespace() = default;

UnknownData::UnknownData() = default;

UnknownData::UnknownData(const UnknownData& other)
    : attrs(other.attrs), fields(other.fields), fieldAttrs(other.fieldAttrs),
      namespaces(other.namespaces) {}

UnknownData& UnknownData::operator=(const UnknownData& other) {
  attrs = other.attrs;
  fields = other.fields;
  fieldAttrs = other.fieldAttrs;
  namespaces = other.namespaces;
  return *this;
}

UnknownData::~UnknownData() = default;

QString schemaobject_detail::GetAttrListString(const AttributeList& list) {
  if (list.empty())
    return QString();
  QString text;
  for (const auto& [name, value] : list) {
    text += QLatin1Char(' ');
    AppendAttributeValue(text, name);
    text += QLatin1String("=\"");
    AppendAttributeValue(text, value);
    text += QLatin1Char('"');
  }
  text.squeeze();
  return text;
}

UnknownData& SchemaObject::unknownData() {
  if (!unknownData_)
    unknownData_ = std::make_unique<UnknownData>();
  return *unknownData_;
}

void SchemaObject::SetUnknownAttrs(const QString& text, const NamespaceList* namespaces) {
  UnknownData& data = unknownData();
  data.attrs = text;
  if (namespaces)
    data.namespaces = *namespaces;
}

void SchemaObject::SetUnknownAttrs(const AttributeList& list, const NamespaceList* namespaces) {
  SetUnknownAttrs(schemaobject_detail::GetAttrListString(list), namespaces);
}

void SchemaObject::SetUnknownFields(const QString& text, const NamespaceList* namespaces) {
  UnknownData& data = unknownData();
  data.fields = text;
  if (namespaces)
    data.namespaces = *namespaces;
}

void SchemaObject::SetUnknownFieldAttrs(const Field& field, const AttributeList& list,
                                        const NamespaceList* namespaces) {
  if (list.empty())
    return;
  TakeUnknownFieldAttrs(field);
  PutUnknownFieldAttrs(field, schemaobject_detail::GetAttrListString(list));
  if (namespaces)
    unknownData_->namespaces = *namespaces;
}

void SchemaObject::PutUnknownFieldAttrs(const Field& field, const QString& text) {
  if (text.isNull())
    return;
  SetBit(kBitUnknownFieldAttrs, true);
  unknownData().fieldAttrs.emplace_back(&field, text);
}

QString SchemaObject::TakeUnknownFieldAttrs(const Field& field) {
  QString text = GetUnknownFieldAttrs(field);
  if (!text.isNull()) {
    auto& all = unknownData_->fieldAttrs;
    all.erase(std::find_if(all.begin(), all.end(),
                           [&](const auto& pair) { return pair.first == &field; }));
  }
  return text;
}

QString SchemaObject::GetUnknownFieldAttrs(const Field& field) const {
  if (!GetBit(kBitUnknownFieldAttrs) || !unknownData_)
    return QString();
  for (const auto& [candidate, text] : unknownData_->fieldAttrs) {
    if (candidate == &field)
      return text;
  }
  return QString();
}

} // namespace vorrel::kestan
