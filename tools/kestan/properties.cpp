#include "tools/kestan/properties.h"

#include "kestan/core/field.h"
#include "kestan/core/schema.h"
#include "kestan/style/style.h"

#include <utility>

using namespace vorrel::kestan;

namespace tool {

std::vector<Property> PropertyLister::List(const StyleSources& sources) {
  for (const Field* part : Style::GetClassSchema().GetObjectFields()) {
    if (!part->HasFlag(Field::kNoWrite)) {
      AddSubStyle(sources, *part);
    }
  }
  return std::exchange(properties_, {});
}

/// An object of the class to which nothing was said.
const SchemaObject& PropertyLister::GetDefault(const Schema& schema) {
  for (const auto& object : defaults_) {
    if (&object->GetSchema() == &schema) {
      return *object;
    }
  }
  defaults_.push_back(schema.CreateInstance(KmlId(), QString(), nullptr));
  return *defaults_.back();
}

void PropertyLister::AddSubStyle(const StyleSources& sources, const Field& part) {
  const SchemaObject& byDefault = GetDefault(*part.GetObjSchema());
  const SchemaObject* subStyle = sources.GetSubStyle(part);
  for (const Field* field : byDefault.GetSchema().GetSerializedFields()) {
    const StyleSource* source = sources.Find(part, *field);
    AddField(byDefault.GetPrefixedName(), source ? *subStyle : byDefault, *field,
             source ? source - sources.begin() : -1);
  }
}

void PropertyLister::AddField(const QString& path, const SchemaObject& object, const Field& field,
                              std::ptrdiff_t source) {
  const QString stem = path + QLatin1Char('.');
  if (!field.GetObjSchema()) {
    const QString value = field.toString(object, -1);
    properties_.push_back({stem + QString::fromUtf8(field.GetTag()),
                           value.isNull() ? QStringLiteral("") : value, source});
    return;
  }
  const int count = field.IsArray() ? field.getCount(object) : 1;
  bool isEmpty = true;
  for (int i = 0; i < count; ++i) {
    if (const SchemaObject* child = field.GetObject(object, i)) {
      const QString index = field.IsArray() ? QStringLiteral("[%1]").arg(i) : QString();
      AddChild(stem + child->GetPrefixedName() + index, *child, source);
      isEmpty = false;
    }
  }
  if (isEmpty) {
    properties_.push_back({stem + field.GetObjSchema()->GetName(), QString(), source});
  }
}

void PropertyLister::AddChild(const QString& path, const SchemaObject& child,
                              std::ptrdiff_t source) {
  const std::size_t before = properties_.size();
  const unsigned given = child.GetFieldsSpecified();
  for (const Field* field : child.GetSchema().GetSerializedFields()) {
    if (given == 0 || (given & field->GetMaskBit()) != 0) { // not all classes keep a mask
      AddField(path, child, *field, source);
    }
  }
  if (properties_.size() == before) {
    properties_.push_back({path, QStringLiteral(""), source});
  }
}

} // namespace tool
