#include "kestan/read/rootcontent.h"

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/attributevalue.h"
#include "kestan/read/namespaces.h"
#include "kestan/read/prefixes.h"
#include "kestan/write/attributetext.h" // one way of taking attributes apart

#include <QMap>
#include <QSet>

namespace vorrel::kestan {

namespace {

bool HoldsNothing(const UnknownData& data) {
  return data.attrs.isEmpty() && data.fields.isEmpty() && data.fieldAttrs.empty();
}

void AppendAttribute(QString& out, const QString& name, const QString& value) {
  out += QLatin1Char(' ') + name + QLatin1String("=\"");
  AppendAttributeValue(out, value);
  out += QLatin1Char('"');
}

/// The attributes in a start tag, of which `text` begins behind the name. Markup characters in
/// values are escaped.
std::vector<TextAttribute> TakeStartTag(QStringView text) { return TakeAttributes(text); }

} // namespace

/// One move of preserved content into an object.
class RootContent::Move {
public:
  Move(SchemaObject& object, const UnknownData& from)
      : object_(object), from_(from), to_(object.unknownData()) {
    if (HoldsNothing(to_))
      to_.namespaces = from.namespaces;
    outer_.SetList(from.namespaces);
    inner_.SetList(to_.namespaces);
  }

  /// Both put together what the object gets in front of its own, and count what they repeat.
  void AddAttributes(const QString& wrapperName);
  void AddElement(QStringView text, int nameEnd, const QString& wrapperName);
  void AddText(QStringView text) { elements_.append(text.data(), static_cast<int>(text.size())); }

  qint64 GetRepeated() const { return repeated_; }

  void Finish() {
    for (const RefPtr<UnknownNamespace>& declaration : added_)
      to_.namespaces.append(declaration);
    to_.attrs = attributes_ + to_.attrs;
    to_.fields = elements_ + to_.fields;
    to_.fields.squeeze();
  }

private:
  using Declarations = QMap<QString, QString>;

  QString GetUri(const QString& prefix) const;
  bool Suits(const QString& prefix, QString& uri);
  void FindConflicts(QStringView text, Declarations& conflicts);
  QString GetExpandedName(QStringView name, const CarriedPrefixes& prefixes) const;
  bool MeansSomething(QStringView name) const;
  void Append(QString& out, const Declarations& declarations);

  SchemaObject& object_;
  const UnknownData& from_;
  UnknownData& to_;
  CarriedPrefixes outer_;
  CarriedPrefixes inner_;
  QHash<QString, QString> joined_; ///< URIs of the prefixes that the object gets.
  NamespaceList added_;
  QString attributes_;
  QString elements_;
  qint64 repeated_ = 0;
};

/// What a prefix means in the root; null when that's nothing.
QString RootContent::Move::GetUri(const QString& prefix) const {
  const QString uri = outer_.Find(prefix);
  return uri.isNull() ? GetRootUri(prefix) : uri;
}

/// True when a prefix means the same in the object, or nothing: then it gets its meaning. Else
/// `uri` is what it means in the root.
bool RootContent::Move::Suits(const QString& prefix, QString& uri) {
  uri = GetUri(prefix);
  if (uri.isNull())
    return true; // declared nowhere
  QString inner = inner_.Find(prefix);
  if (inner.isNull())
    inner = joined_.value(prefix);
  if (inner.isNull())
    inner = GetRootUri(prefix);
  if (!inner.isNull())
    return inner == uri;
  const QString own(prefix.constData(), prefix.size()); // not of the text
  joined_.insert(own, uri);
  added_.append(RefPtr<UnknownNamespace>(new UnknownNamespace(object_.GetUrl(), own, uri)));
  return true;
}

void RootContent::Move::FindConflicts(QStringView text, Declarations& conflicts) {
  ForEachPrefix(text, [&](const QString& prefix) {
    QString uri;
    if (!Suits(prefix, uri))
      conflicts.insert(QString(prefix.constData(), prefix.size()), uri);
  });
}

QString RootContent::Move::GetExpandedName(QStringView name,
                                           const CarriedPrefixes& prefixes) const {
  const QString text = name.toString();
  const auto colon = text.indexOf(QLatin1Char(':'));
  if (colon < 0)
    return text;
  const QString prefix = text.left(colon);
  QString uri = prefixes.Find(prefix);
  if (uri.isNull())
    uri = GetUndeclaredUri(prefix);
  return uri + QLatin1Char(' ') + text.mid(colon + 1);
}

/// True for an attribute that the object would take as a value of its own.
bool RootContent::Move::MeansSomething(QStringView name) const {
  const QString text = name.toString();
  const auto colon = text.indexOf(QLatin1Char(':'));
  const Namespace ns = colon < 0
                           ? object_.GetNamespace()
                           : NamespaceStringToEnum(GetUri(text.left(colon)), nullptr, nullptr);
  return object_.FindField(text.mid(colon + 1), ns, nullptr) != nullptr;
}

void RootContent::Move::Append(QString& out, const Declarations& declarations) {
  for (auto entry = declarations.constBegin(); entry != declarations.constEnd(); ++entry) {
    AppendAttribute(out, QLatin1String("xmlns:") + entry.key(), entry.value());
    repeated_ += entry.value().size();
  }
}

void RootContent::Move::AddAttributes(const QString& wrapperName) {
  QSet<QString> names;
  for (const TextAttribute& attribute : TakeStartTag(to_.attrs))
    names.insert(GetExpandedName(attribute.name, inner_));
  QString wrapped;
  Declarations declarations;
  for (const TextAttribute& attribute : TakeStartTag(from_.attrs)) {
    Declarations conflicts;
    FindConflicts(attribute.name, conflicts);
    FindConflicts(attribute.value, conflicts);
    const bool suits = conflicts.isEmpty() && !MeansSomething(attribute.name) &&
                       !names.contains(GetExpandedName(attribute.name, outer_));
    QString& out = suits ? attributes_ : wrapped;
    out += QLatin1Char(' ');
    out.append(attribute.name.data(), static_cast<int>(attribute.name.size()));
    out += QLatin1String("=\"");
    out.append(attribute.value.data(), static_cast<int>(attribute.value.size()));
    out += QLatin1Char('"');
    for (auto entry = conflicts.constBegin(); entry != conflicts.constEnd(); ++entry)
      declarations.insert(entry.key(), entry.value());
  }
  if (wrapped.isEmpty())
    return;
  elements_ += QLatin1Char('<') + wrapperName;
  Append(elements_, declarations);
  elements_ += wrapped + QLatin1String("></") + wrapperName + QLatin1Char('>');
}

void RootContent::Move::AddElement(QStringView text, int nameEnd, const QString& wrapperName) {
  Declarations conflicts;
  FindConflicts(text, conflicts);
  for (const TextAttribute& attribute : TakeStartTag(text.mid(nameEnd))) {
    QStringView prefix;
    if (IsDeclaration(attribute.name, &prefix))
      conflicts.remove(prefix.toString());
  }
  if (!wrapperName.isEmpty())
    elements_ += QLatin1Char('<') + wrapperName + QLatin1Char('>');
  AddText(text.left(nameEnd));
  Append(elements_, conflicts);
  AddText(text.mid(nameEnd));
  if (!wrapperName.isEmpty())
    elements_ += QLatin1String("</") + wrapperName + QLatin1Char('>');
}

void RootContent::Add(const QString& localName, Namespace ns, int position, int nameLength) {
  elements_.push_back({localName, ns, position, position + 1 + nameLength});
}

bool RootContent::MoveAttributesTo(SchemaObject& object, const SchemaObject& root,
                                   const MayRepeat& mayRepeat) {
  const UnknownData* const from = root.GetUnknownData();
  if (!from || from->attrs.isEmpty())
    return true;
  Move move(object, *from);
  move.AddAttributes(root.getType());
  if (!mayRepeat(move.GetRepeated()))
    return false;
  move.Finish();
  return true;
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
  QSet<QString> declared;
  for (const TextAttribute& attribute :
       TakeStartTag(QStringView(content.fields).mid(element.nameEnd)))
    declared.insert(attribute.name.toString());
  AttributeList declarations;
  const auto declare = [&](const QString& name, const QString& uri) {
    if (!declared.contains(name))
      declarations.emplace_back(name, uri);
    declared.insert(name);
  };
  for (const RefPtr<UnknownNamespace>& entry : content.namespaces)
    declare(QLatin1String("xmlns:") + entry->prefix, entry->uri);
  declare(QStringLiteral("xmlns"), NamespaceEnumToString(Namespace::kKml));
  for (const char* const prefix : {kExtPrefix, kKmlPrefix, kAtomPrefix})
    declare(QLatin1String("xmlns:") + QLatin1String(prefix), GetRootUri(QLatin1String(prefix)));
  QString document = content.fields.mid(element.position);
  document.insert(element.nameEnd - element.position,
                  schemaobject_detail::GetAttrListString(declarations));
  return document;
}

bool RootContent::MoveTo(SchemaObject& feature, const SchemaObject& root,
                         const MayRepeat& mayRepeat) const {
  const UnknownData* const from = root.GetUnknownData();
  if (!from || HoldsNothing(*from))
    return true;
  Move move(feature, *from);
  move.AddAttributes(root.getType());
  qint64 repeated = move.GetRepeated();
  if (!mayRepeat(repeated))
    return false;
  const QStringView fields(from->fields);
  int begin = elements_.empty() ? 0 : elements_.front().position;
  move.AddText(fields.left(begin));
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    const Element& element = elements_[i];
    const int end = i + 1 < elements_.size() ? elements_[i + 1].position
                                             : static_cast<int>(from->fields.size());
    const bool means = feature.FindField(element.localName, element.ns, nullptr) != nullptr;
    move.AddElement(fields.mid(element.position, end - element.position),
                    element.nameEnd - element.position, means ? root.getType() : QString());
    const qint64 formerly = std::exchange(repeated, move.GetRepeated());
    if (!mayRepeat(repeated - formerly))
      return false;
  }
  move.Finish();
  return true;
}

} // namespace vorrel::kestan
