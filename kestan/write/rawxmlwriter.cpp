#include "kestan/write/rawxmlwriter.h"

#include "kestan/read/namespaces.h" // the URIs of the standard prefixes
#include "kestan/write/utf8ostream.h"
#include "kestan/write/xmlname.h"
#include "kestan/write/xmltext.h"

#include <algorithm>
#include <string_view>

namespace vorrel::kestan {

namespace {

constexpr QStringView kXmlns = u"xmlns";
constexpr QStringView kXmlnsColon = u"xmlns:";

bool IsDeclaration(QStringView name) { return name == kXmlns || name.startsWith(kXmlnsColon); }

/// What documents mean by a prefix that they don't declare.
QString UndeclaredUri(const QString& prefix) {
  if (prefix == QLatin1String("xsi"))
    return QStringLiteral("http://www.w3.org/2001/XMLSchema-instance");
  if (prefix == QLatin1String("xs"))
    return QStringLiteral("http://www.w3.org/2001/XMLSchema");
  if (prefix == QLatin1String("xlink"))
    return QStringLiteral("http://www.w3.org/1999/xlink");
  if (prefix == QLatin1String(kXalPrefix))
    return QLatin1String(kXalNamespaceString) + QLatin1String("2.0");
  if (prefix == QLatin1String(kExtPrefix))
    return NamespaceEnumToString(Namespace::kExt);
  if (prefix == QLatin1String(kKmlPrefix))
    return NamespaceEnumToString(Namespace::kKml);
  if (prefix == QLatin1String(kAtomPrefix))
    return NamespaceEnumToString(Namespace::kAtom);
  return QLatin1String(kUndeclaredNamespaceString) + prefix;
}

void SkipSpace(QStringView& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsXmlSpace);
  text = text.mid(end - text.begin());
}

/// Passes over `opening`, everything up to `closing`, and that. False when one is missing.
bool SkipEnclosed(QStringView& text, QStringView opening, QStringView closing) {
  if (!text.startsWith(opening))
    return false;
  const QStringView rest = text.mid(opening.size());
  const auto end = std::search(rest.begin(), rest.end(), closing.begin(), closing.end());
  if (end == rest.end())
    return false;
  text = rest.mid(end - rest.begin() + closing.size());
  return true;
}

/// The name of an attribute as namespaces see it.
QString ExpandedName(const QString& uri, QStringView local) {
  QString name = uri;
  if (!uri.isEmpty())
    name += QLatin1Char(' ');
  name.append(local.data(), static_cast<int>(local.size()));
  return name.replace(QLatin1Char(':'), QLatin1Char('_'));
}

} // namespace

void RawXmlWriter::SetScope(const NamespaceList& namespaces) {
  root_.Add(namespaces);
  if (namespaces.constData() == scope_.constData())
    return;
  scope_ = namespaces;
  resolved_.clear();
}

QString RawXmlWriter::Resolve(const QString& prefix) {
  if (prefix == QLatin1String("xml"))
    return prefix;
  QString& uri = resolved_[prefix];
  for (auto it = scope_.constEnd(); uri.isEmpty() && it != scope_.constBegin();) {
    --it;
    if (*it && (*it)->prefix == prefix && IsDeclarableUri((*it)->uri))
      uri = (*it)->uri;
  }
  if (uri.isEmpty())
    uri = UndeclaredUri(prefix);
  return uri;
}

bool RawXmlWriter::IsFirst(const QString& name) {
  const auto count = seen_.size();
  seen_.insert(name);
  return seen_.size() != count;
}

QStringView RawXmlWriter::TakeName(QStringView& text) {
  if (text.isEmpty() || !IsNameStart(text.front()))
    return {};
  const auto end = std::find_if_not(text.begin(), text.end(), IsNameChar);
  const QStringView name = text.left(end - text.begin());
  text = text.mid(name.size());
  return name;
}

bool RawXmlWriter::TakeAttribute(QStringView& text, Attribute& attribute) {
  QStringView rest = text;
  SkipSpace(rest);
  attribute.name = TakeName(rest);
  SkipSpace(rest);
  if (attribute.name.isEmpty() || rest.isEmpty() || rest.front() != '=')
    return false;
  rest = rest.mid(1);
  SkipSpace(rest);
  if (rest.isEmpty() || (rest.front() != '"' && rest.front() != '\''))
    return false;
  const auto quote = std::find(rest.begin() + 1, rest.end(), rest.front());
  if (quote == rest.end())
    return false;
  attribute.value = rest.mid(1, quote - rest.begin() - 1);
  text = rest.mid(attribute.value.size() + 2);
  return true;
}

std::vector<RawXmlWriter::Attribute> RawXmlWriter::TakeAttributes(QStringView& text) {
  std::vector<Attribute> attributes;
  Attribute attribute;
  while (TakeAttribute(text, attribute))
    attributes.push_back(attribute);
  return attributes;
}

void RawXmlWriter::WriteValue(QStringView value) {
  stream_ << "=\"";
  const AttributeScope scope(stream_);
  WriteEscapedText(stream_, value);
  stream_ << "\"";
}

void RawXmlWriter::WriteAttribute(const Attribute& attribute, const QString& prefix) {
  stream_ << " ";
  XmlName(attribute.name).Write(stream_, prefix);
  WriteValue(attribute.value);
}

void RawXmlWriter::CollectAttributesOfOpenTag() {
  seen_.clear();
  // The values of attributes hold no "<", so that the last one begins the tag.
  const std::string_view written(stream_.data(), stream_.size());
  const std::size_t begin = written.rfind('<');
  if (begin == std::string_view::npos)
    return;
  const std::string_view bytes = written.substr(begin + 1);
  const QString tag = QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
  QStringView rest(tag);
  TakeName(rest);
  for (const Attribute& attribute : TakeAttributes(rest)) {
    const XmlName name(attribute.name);
    const QString prefix = name.prefix.toString();
    seen_.insert(ExpandedName(prefix.isEmpty() ? prefix : UndeclaredUri(prefix), name.local));
  }
}

void RawXmlWriter::WriteAttributes(const QString& text) {
  QStringView rest(text);
  const std::vector<Attribute> attributes = TakeAttributes(rest);
  if (attributes.empty())
    return;
  // A declaration on the tag itself would change what the typed content of the element means.
  NamespaceList scope = scope_;
  for (const Attribute& attribute : attributes) {
    if (attribute.name.startsWith(kXmlnsColon))
      scope.append(RefPtr<UnknownNamespace>(
          new UnknownNamespace(QString(), attribute.name.mid(kXmlnsColon.size()).toString(),
                               DecodeReferences(attribute.value))));
  }
  SetScope(scope);

  CollectAttributesOfOpenTag();
  for (const Attribute& attribute : attributes) {
    if (IsDeclaration(attribute.name))
      continue;
    const XmlName name(attribute.name);
    QString prefix = name.prefix.toString();
    QString uri;
    if (!prefix.isEmpty()) {
      uri = Resolve(prefix);
      if (prefix != QLatin1String("xml") && !root_.Declare(prefix, uri))
        prefix = root_.PrefixFor(uri);
    }
    if (IsFirst(ExpandedName(uri, name.local)))
      WriteAttribute(attribute, prefix);
  }
}

void RawXmlWriter::WriteElements(const QString& text) {
  QStringView rest(text);
  while (!rest.isEmpty()) {
    if (rest.front() == '<' && TakeMarkup(rest))
      continue;
    // Text up to the next markup; a "<" in front begins none.
    const auto next = std::find(rest.begin() + 1, rest.end(), QLatin1Char('<'));
    const QStringView run = rest.left(next - rest.begin());
    WriteEscapedText(stream_, run);
    rest = rest.mid(run.size());
  }
  while (!open_.empty())
    CloseElement();
}

bool RawXmlWriter::TakeMarkup(QStringView& text) {
  constexpr QStringView kCdata = u"<![CDATA[";
  constexpr QStringView kCdataEnd = u"]]>";
  const QStringView start = text;
  if (SkipEnclosed(text, kCdata, kCdataEnd)) {
    const auto size = start.size() - text.size() - kCdata.size() - kCdataEnd.size();
    WriteCdataSection(stream_, start.mid(kCdata.size(), size));
    return true;
  }
  // Comments and instructions aren't kept in reading either.
  return TakeStartTag(text) || TakeEndTag(text) || SkipEnclosed(text, u"<!--", u"-->") ||
         SkipEnclosed(text, u"<?", u"?>");
}

bool RawXmlWriter::TakeStartTag(QStringView& text) {
  QStringView rest = text.mid(1);
  const QStringView rawName = TakeName(rest);
  if (rawName.isEmpty())
    return false;
  std::vector<Attribute> attributes = TakeAttributes(rest);
  SkipSpace(rest);
  const bool isEmptyElement = rest.startsWith(QLatin1Char('/'));
  if (isEmptyElement)
    rest = rest.mid(1);
  if (!rest.startsWith(QLatin1Char('>')))
    return false;
  text = rest.mid(1);
  DropBadDeclarations(attributes);

  const bool isOutermost = open_.empty();
  open_.push_back({rawName, localPrefixes_.size()});
  // The element's own declarations hold for its name and all its attributes.
  for (const Attribute& attribute : attributes) {
    if (attribute.name.startsWith(kXmlnsColon)) {
      localPrefixes_.push_back(attribute.name.mid(kXmlnsColon.size()).toString());
      localUris_[localPrefixes_.back()].push_back(DecodeReferences(attribute.value));
    }
  }

  const XmlName name(rawName);
  stream_ << "<";
  name.Write(stream_);
  if (!name.prefix.isEmpty())
    UsePrefix(name.prefix);
  seen_.clear();
  for (const Attribute& attribute : attributes) {
    if (!IsDeclaration(attribute.name)) {
      WriteRawAttribute(attribute);
    } else if (isOutermost) {
      InsertLater(attribute);
    } else {
      stream_ << " ";
      stream_.Write(attribute.name.begin(), attribute.name.end());
      WriteValue(attribute.value);
    }
  }
  if (isOutermost)
    insertAt_ = stream_.size();
  stream_ << ">";
  if (isEmptyElement)
    CloseElement();
  return true;
}

void RawXmlWriter::InsertLater(const Attribute& declaration) {
  const QString prefix = declaration.name.mid(kXmlnsColon.size()).toString();
  const QString uri = DecodeReferences(declaration.value);
  // A standard prefix with its own meaning, which it lacked around the element in the source, needs
  // no declaration here.
  if (!IsRootPrefix(prefix) || !root_.Declare(prefix, uri))
    declarations_.insert(declaration.name.toString(), uri);
}

void RawXmlWriter::DropBadDeclarations(std::vector<Attribute>& attributes) {
  seen_.clear();
  const auto isBad = [this](const Attribute& attribute) {
    if (!IsDeclaration(attribute.name))
      return false;
    const QString uri = DecodeReferences(attribute.value);
    const bool isAllowed =
        attribute.name == kXmlns
            ? uri.isEmpty() || IsDeclarableUri(uri)
            : IsDeclarablePrefix(attribute.name.mid(kXmlnsColon.size())) && IsDeclarableUri(uri);
    return !isAllowed || !IsFirst(attribute.name.toString());
  };
  attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isBad), attributes.end());
}

void RawXmlWriter::WriteRawAttribute(const Attribute& attribute) {
  const XmlName name(attribute.name);
  const QString uri = name.prefix.isEmpty() ? QString() : UsePrefix(name.prefix);
  if (IsFirst(ExpandedName(uri, name.local)))
    WriteAttribute(attribute, name.prefix.toString());
}

QString RawXmlWriter::UsePrefix(QStringView prefixView) {
  const QString prefix = prefixView.toString();
  const auto local = localUris_.constFind(prefix);
  if (local != localUris_.constEnd() && !local->empty())
    return local->back();
  const QString uri = Resolve(prefix);
  if (prefix != QLatin1String("xml") && !root_.Declare(prefix, uri))
    declarations_.insert(QLatin1String("xmlns:") + prefix, uri);
  return uri;
}

bool RawXmlWriter::TakeEndTag(QStringView& text) {
  if (!text.startsWith(u"</"))
    return false;
  QStringView rest = text.mid(2);
  const QStringView name = TakeName(rest);
  SkipSpace(rest);
  if (name.isEmpty() || !rest.startsWith(QLatin1Char('>')))
    return false;
  text = rest.mid(1);
  // An end tag without its start tag goes; elements that were left open end with the outer one.
  const auto match = std::find_if(open_.rbegin(), open_.rend(),
                                  [name](const Element& element) { return element.name == name; });
  for (auto count = match == open_.rend() ? 0 : match - open_.rbegin() + 1; count > 0; --count)
    CloseElement();
  return true;
}

void RawXmlWriter::CloseElement() {
  const Element element = open_.back();
  open_.pop_back();
  stream_ << "</";
  XmlName(element.name).Write(stream_);
  stream_ << ">";
  for (; localPrefixes_.size() > element.declared; localPrefixes_.pop_back())
    localUris_[localPrefixes_.back()].pop_back();
  if (open_.empty())
    InsertDeclarations();
}

void RawXmlWriter::InsertDeclarations() {
  if (declarations_.isEmpty())
    return;
  // In an order of their own, so that the text doesn't depend on where they stood before.
  Utf8OStream text;
  const AttributeScope scope(text);
  for (auto it = declarations_.constBegin(); it != declarations_.constEnd(); ++it) {
    text << " " << it.key() << "=\"";
    XmlUtf8OStream(text) << it.value();
    text << "\"";
  }
  stream_.Replace(insertAt_, 0, text.data(), text.size());
  declarations_.clear();
}

} // namespace vorrel::kestan
