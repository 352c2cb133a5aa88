#include "kestan/read/rootcontent.h"

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
    list.push_back({attributes.mid(at, equals - at).trimmed(),
                    attributes.mid(equals + 2, end - equals - 2)});
    at = end + 1;
  }
  return list;
}

const UnknownNamespace* FindPrefix(const NamespaceList& list, const QString& prefix) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const auto& entry) {
    return entry->prefix == prefix;
  });
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

void RootContent::MoveTo(SchemaObject& feature, const SchemaObject& root) const {
  const UnknownData* const from = root.GetUnknownData();
  if (!from)
    return;
  UnknownData& to = feature.unknownData();
  const NamespaceList conflicts = Merge(to.namespaces, from->namespaces);

  const mmvector<Attribute> present = Split(to.attrs);
  QString attributes;
  for (const Attribute& attribute : Split(from->attrs)) {
    const QString name = GetNameInFeature(attribute.name, conflicts, to.namespaces);
    if (!HasAttribute(feature, present, name))
      attributes += QLatin1Char(' ') + name + QLatin1String("=\"") + attribute.value +
                    QLatin1Char('"');
  }
  feature.SetUnknownAttrs(attributes + to.attrs, nullptr);

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
    fields += from->fields.midRef(begin, element.nameEnd - begin) + declarations +
              from->fields.midRef(element.nameEnd, end - element.nameEnd);
    if (means)
      fields += QLatin1String("</") + root.getType() + QLatin1Char('>');
    begin = end;
  }
  feature.SetUnknownFields(fields + from->fields.midRef(begin) + to.fields, nullptr);
}

} // namespace vorrel::kestan
