#include "kestan/read/rootcontent.h"

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/read/namespaces.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

struct Attribute {
  QString name;
  QString value; ///< Escaped.
};

/// Takes attributes apart that `GetAttrListString` has put together.
mmvector<Attribute> Split(const QString& attributes) {
  mmvector<Attribute> list;
  for (int at = 0; at < attributes.size();) {
    const int equals = attributes.indexOf(QLatin1String("=\""), at);
    const int end = equals < 0 ? -1 : attributes.indexOf(QLatin1Char('"'), equals + 2);
    if (end < 0)
      break;
    list.push_back(
        {attributes.mid(at, equals - at).trimmed(), attributes.mid(equals + 2, end - equals - 2)});
    at = end + 1;
  }
  return list;
}

const UnknownNamespace* FindPrefix(const NamespaceList& list, const QString& prefix) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const auto& entry) { return entry->prefix == prefix; });
  return found == list.end() ? nullptr : found->get();
}

/// Declarations of the root for whose prefixes the feature has another meaning.
NamespaceList Merge(NamespaceList& list, const NamespaceList& additions) {
  NamespaceList conflicts;
  if (list.isEmpty())
    list = additions;
  if (list.constData() == additions.constData())
    return conflicts;
  for (const RefPtr<UnknownNamespace>& addition : additions) {
    const UnknownNamespace* const present = FindPrefix(list, addition->prefix);
    if (!present)
      list.append(addition);
    else if (present->uri != addition->uri)
      conflicts.append(addition);
  }
  return conflicts;
}

/// Renames the attribute where its prefix means something else inside the feature.
QString GetNameInFeature(const QString& name, const NamespaceList& conflicts,
                         NamespaceList& namespaces) {
  const int colon = name.indexOf(QLatin1Char(':'));
  const UnknownNamespace* const conflict =
      colon < 0 ? nullptr : FindPrefix(conflicts, name.left(colon));
  if (!conflict)
    return name;
  const auto hasUri = [conflict](const auto& entry) { return entry->uri == conflict->uri; };
  auto entry = std::find_if(namespaces.begin(), namespaces.end(), hasUri);
  if (entry == namespaces.end()) {
    QString prefix;
    int number = 0;
    do
      prefix = conflict->prefix + QString::number(++number);
    while (FindPrefix(namespaces, prefix) || FindPrefix(conflicts, prefix));
    namespaces.append(
        RefPtr<UnknownNamespace>(new UnknownNamespace(conflict->url, prefix, conflict->uri)));
    entry = namespaces.end() - 1;
  }
  return (*entry)->prefix + name.mid(colon);
}

bool HasAttribute(const SchemaObject& object, const mmvector<Attribute>& unknown,
                  const QString& name) {
  if (object.FindField(name, object.GetNamespace(), nullptr))
    return true;
  return std::any_of(unknown.begin(), unknown.end(),
                     [&](const Attribute& attribute) { return attribute.name == name; });
}

} // namespace

void RootContent::Add(const QString& localName, Namespace ns, int position, int nameLength) {
  elements_.push_back({localName, ns, position, position + 1 + nameLength});
}

/// Answers the declarations that the object can't take.
NamespaceList RootContent::MoveAttributes(SchemaObject& object, const UnknownData& from) {
  UnknownData& to = object.unknownData();
  const NamespaceList conflicts = Merge(to.namespaces, from.namespaces);
  const mmvector<Attribute> present = Split(to.attrs);
  QString attributes;
  for (const Attribute& attribute : Split(from.attrs)) {
    const QString name = GetNameInFeature(attribute.name, conflicts, to.namespaces);
    if (!HasAttribute(object, present, name))
      attributes +=
          QLatin1Char(' ') + name + QLatin1String("=\"") + attribute.value + QLatin1Char('"');
  }
  object.SetUnknownAttrs(attributes + to.attrs, nullptr);
  return conflicts;
}

void RootContent::MoveAttributesTo(SchemaObject& object, const SchemaObject& root) {
  const UnknownData* const from = root.GetUnknownData();
  if (from && !from->attrs.isEmpty())
    MoveAttributes(object, *from);
}

QString RootContent::GetDocument(const SchemaObject& root) const {
  if (elements_.size() != 1 || !root.GetUnknownData())
    return QString();
  for (const Field* const field : root.GetSchema().GetObjectFields()) {
    if (field->GetObject(root, -1))
      return QString();
  }
  const Element& element = elements_[0];
  const Schema* const schema = Schema::FindNamedSchema(element.localName, element.ns);
  if (!schema || schema->IsAbstract() || schema == &root.GetSchema())
    return QString();

  const UnknownData& content = *root.GetUnknownData();
  // Markup characters in values are escaped, so this is the end of the start tag.
  const QString startTag = content.fields.mid(
      element.position,
      content.fields.indexOf(QLatin1Char('>'), element.nameEnd) - element.position);
  AttributeList declarations;
  const auto declare = [&](const QString& name, const QString& uri) {
    if (!startTag.contains(QLatin1Char(' ') + name + QLatin1String("=\"")))
      declarations.emplace_back(name, uri);
  };
  for (const RefPtr<UnknownNamespace>& entry : content.namespaces)
    declare(QLatin1String("xmlns:") + entry->prefix, entry->uri);
  declare(QStringLiteral("xmlns"), NamespaceEnumToString(Namespace::kKml));
  for (const auto& [prefix, ns] :
       {std::pair(kExtPrefix, Namespace::kExt), std::pair(kKmlPrefix, Namespace::kKml),
        std::pair(kAtomPrefix, Namespace::kAtom)}) {
    if (!FindPrefix(content.namespaces, QLatin1String(prefix)))
      declare(QLatin1String("xmlns:") + QLatin1String(prefix), NamespaceEnumToString(ns));
  }
  QString document = content.fields.mid(element.position);
  document.insert(element.nameEnd - element.position,
                  schemaobject_detail::GetAttrListString(declarations));
  return document;
}

void RootContent::MoveTo(SchemaObject& feature, const SchemaObject& root) const {
  const UnknownData* const from = root.GetUnknownData();
  if (!from)
    return;
  const NamespaceList conflicts = MoveAttributes(feature, *from);
  const UnknownData& to = *feature.GetUnknownData();
  QString declarations;
  for (const RefPtr<UnknownNamespace>& conflict : conflicts) {
    const AttributeList list{{QLatin1String("xmlns:") + conflict->prefix, conflict->uri}};
    declarations += schemaobject_detail::GetAttrListString(list);
  }
  QString fields;
  int begin = 0;
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    const Element& element = elements_[i];
    const int end = i + 1 < elements_.size() ? elements_[i + 1].position : from->fields.size();
    const bool means = feature.FindField(element.localName, element.ns, nullptr) != nullptr;
    if (means)
      fields += QLatin1Char('<') + root.getType() + QLatin1Char('>');
    fields += from->fields.mid(begin, element.nameEnd - begin) + declarations +
              from->fields.mid(element.nameEnd, end - element.nameEnd);
    if (means)
      fields += QLatin1String("</") + root.getType() + QLatin1Char('>');
    begin = end;
  }
  feature.SetUnknownFields(fields + from->fields.mid(begin) + to.fields, nullptr);
}

} // namespace vorrel::kestan
