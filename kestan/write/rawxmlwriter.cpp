#include "kestan/write/rawxmlwriter.h"

#include "kestan/host/utf8ostream.h"
#include "kestan/read/namespaces.h" // the prefix of KML
#include "kestan/write/xmlname.h"
#include "kestan/write/xmltext.h"

#include <algorithm>
#include <string_view>

namespace vorrel::kestan {

namespace {

const QLatin1String kXml("xml");
const QLatin1String kXmlnsColon("xmlns:");

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
  if (scope_.SetList(namespaces))
    root_.Add(namespaces);
}

/// The URI that the text means by a prefix. False when it says nothing about it: then `uri` is what
/// such documents mean.
bool RawXmlWriter::FindUri(const QString& prefix, QString& uri, bool& isInText) const {
  const auto local = localUris_.constFind(prefix);
  isInText = local != localUris_.constEnd() && !local->empty() && local->back().isInText;
  uri = local != localUris_.constEnd() && !local->empty() ? local->back().uri : scope_.Find(prefix);
  if (!uri.isEmpty())
    return true;
  uri = GetUndeclaredUri(prefix);
  return !GetRootUri(prefix).isNull();
}

void RawXmlWriter::Require(const QString& prefix, const QString& uri) {
  if (!root_.Declare(prefix, uri))
    declarations_.insert(kXmlnsColon + prefix, uri);
}

QString RawXmlWriter::UsePrefix(QStringView prefixView) {
  const QString prefix = prefixView.toString();
  if (prefix == kXml)
    return prefix;
  QString uri;
  bool isInText = false;
  FindUri(prefix, uri, isInText);
  if (!isInText)
    Require(prefix, uri);
  return uri;
}

/// Values may mean names with prefixes. Those that stand for something keep it.
void RawXmlWriter::UseMentioned(QStringView text) {
  ForEachPrefix(text, [this](const QString& prefix) {
    QString uri;
    bool isInText = false;
    if (FindUri(prefix, uri, isInText) && !isInText)
      Require(QString(prefix.constData(), prefix.size()), uri);
  });
}

bool RawXmlWriter::IsFirst(const QString& name) {
  const auto count = seen_.size();
  seen_.insert(name);
  return seen_.size() != count;
}

void RawXmlWriter::WriteValue(QStringView value) {
  stream_ << "=\"";
  const AttributeScope scope(stream_);
  WriteEscapedText(stream_, value);
  stream_ << "\"";
}

void RawXmlWriter::WriteAttribute(const TextAttribute& attribute, const QString& prefix) {
  stream_ << " ";
  XmlName(attribute.name).Write(stream_, prefix);
  WriteValue(attribute.value);
}

void RawXmlWriter::CollectOpenTag() {
  seen_.clear();
  tagPrefixes_.clear();
  // The values of attributes hold no "<", so that the last one begins the tag.
  const std::string_view written(stream_.data(), stream_.size());
  const std::size_t begin = written.rfind('<');
  if (begin == std::string_view::npos)
    return;
  const std::string_view bytes = written.substr(begin + 1);
  const QString tag = QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
  QStringView rest(tag);
  const QStringView tagName = TakeName(rest);
  const std::vector<TextAttribute> attributes = TakeAttributes(rest);
  tagPrefixes_.insert(XmlName(tagName).prefix.toString(), QString());
  for (const TextAttribute& attribute : attributes) {
    const QString prefix = XmlName(attribute.name).prefix.toString();
    seen_.insert(ExpandedName(GetRootUri(prefix), XmlName(attribute.name).local));
    tagPrefixes_.insert(prefix, QString());
  }
  for (const TextAttribute& attribute : attributes) {
    QStringView prefix;
    if (IsDeclaration(attribute.name, &prefix))
      tagPrefixes_.insert(prefix.toString(), DecodeReferences(attribute.value));
  }
}

/// The URI that an attribute's prefix stands for; empty for a name without one.
QString RawXmlWriter::GetAttributeUri(const TextAttribute& attribute) const {
  const QString prefix = XmlName(attribute.name).prefix.toString();
  QString uri;
  bool isInText = false;
  if (prefix == kXml)
    uri = prefix;
  else if (!prefix.isEmpty())
    FindUri(prefix, uri, isInText);
  return uri;
}

/// Has a prefix stand for the URI on the open tag, unless the tag or an element inside needs it for
/// what it means on the root.
void RawXmlWriter::RequireOnOpenTag(const QString& prefix, const QString& uri, bool isLeaf) {
  const bool isUsed = tagPrefixes_.contains(prefix);
  if (isUsed && tagPrefixes_.value(prefix) == uri)
    return;
  if (!root_.Declare(prefix, uri)) {
    if (isUsed || (!isLeaf && prefix == QLatin1String(kKmlPrefix)))
      return;
    declarations_.insert(kXmlnsColon + prefix, uri);
    if (!isLeaf)
      root_.Rebind(prefix);
  }
  tagPrefixes_.insert(prefix, uri);
}

/// A prefix that stands for the URI on the open tag: this one if it does.
QString RawXmlWriter::GetPrefixOnOpenTag(const QString& prefix, const QString& uri) {
  if (tagPrefixes_.value(prefix) == uri)
    return prefix;
  QString other = root_.PrefixFor(uri);
  if (tagPrefixes_.contains(other) && tagPrefixes_.value(other) != uri)
    other = root_.MakePrefix(uri);
  tagPrefixes_.insert(other, uri);
  return other;
}

void RawXmlWriter::WriteAttributes(const QString& text, bool isLeaf) {
  QStringView rest(text);
  std::vector<TextAttribute> attributes = TakeAttributes(rest);
  if (attributes.empty())
    return;
  DropBadDeclarations(attributes);
  DeclareLocally(attributes, false);
  CollectOpenTag();
  const auto isNoAttribute = [this](const TextAttribute& attribute) {
    return IsDeclaration(attribute.name) ||
           !IsFirst(ExpandedName(GetAttributeUri(attribute), XmlName(attribute.name).local));
  };
  attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isNoAttribute),
                   attributes.end());
  for (const TextAttribute& attribute : attributes) {
    const QString prefix = XmlName(attribute.name).prefix.toString();
    if (!prefix.isEmpty() && prefix != kXml)
      RequireOnOpenTag(prefix, GetAttributeUri(attribute), isLeaf);
    ForEachPrefix(attribute.value, [&](const QString& mentioned) {
      QString uri;
      bool isInText = false;
      if (FindUri(mentioned, uri, isInText))
        RequireOnOpenTag(QString(mentioned.constData(), mentioned.size()), uri, isLeaf);
    });
  }
  for (const TextAttribute& attribute : attributes) {
    const QString prefix = XmlName(attribute.name).prefix.toString();
    const bool isFixed = prefix.isEmpty() || prefix == kXml;
    WriteAttribute(attribute,
                   isFixed ? prefix : GetPrefixOnOpenTag(prefix, GetAttributeUri(attribute)));
  }
  WriteDeclarations(stream_);
  DropLocal(0);
}

/// In an order of their own, so that the text doesn't depend on where they stood before.
void RawXmlWriter::WriteDeclarations(Utf8OStream& stream) {
  const AttributeScope scope(stream);
  for (auto entry = declarations_.constBegin(); entry != declarations_.constEnd(); ++entry) {
    stream << " " << entry.key() << "=\"";
    XmlUtf8OStream(stream) << entry.value();
    stream << "\"";
    const qint64 size = entry.value().size();
    const qint64 others = static_cast<qint64>(stream_.size()) - repetition_.GetBytes();
    repeatsTooMuch_ = repeatsTooMuch_ || !repetition_.HasRoomFor(size, others);
    repetition_.Add(size);
  }
  declarations_.clear();
}

void RawXmlWriter::WriteElements(const QString& text) {
  QStringView rest(text);
  while (!rest.isEmpty() && !repeatsTooMuch_) {
    if (rest.front() == '<' && TakeMarkup(rest))
      continue;
    // Text up to the next markup; a "<" in front begins none.
    const auto next = std::find(rest.begin() + 1, rest.end(), QLatin1Char('<'));
    const QStringView run = rest.left(next - rest.begin());
    if (!open_.empty())
      UseMentioned(run);
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
    const QStringView content = start.mid(kCdata.size(), size);
    if (!open_.empty())
      UseMentioned(content);
    WriteCdataSection(stream_, content);
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
  std::vector<TextAttribute> attributes = TakeAttributes(rest);
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
  DeclareLocally(attributes, !isOutermost);
  const XmlName name(rawName);
  stream_ << "<";
  name.Write(stream_);
  if (!name.prefix.isEmpty())
    UsePrefix(name.prefix);
  WriteStartTagAttributes(attributes, isOutermost);
  if (isOutermost)
    insertAt_ = stream_.size();
  stream_ << ">";
  if (isEmptyElement)
    CloseElement();
  return true;
}

void RawXmlWriter::WriteStartTagAttributes(const std::vector<TextAttribute>& attributes,
                                           bool isOutermost) {
  seen_.clear();
  for (const TextAttribute& attribute : attributes) {
    if (!IsDeclaration(attribute.name)) {
      const XmlName name(attribute.name);
      const QString uri = name.prefix.isEmpty() ? QString() : UsePrefix(name.prefix);
      if (IsFirst(ExpandedName(uri, name.local))) {
        WriteAttribute(attribute, name.prefix.toString());
        UseMentioned(attribute.value);
      }
    } else if (!isOutermost) {
      stream_ << " ";
      stream_.Write(attribute.name.begin(), attribute.name.end());
      WriteValue(attribute.value);
    } else if (attribute.name == QLatin1String("xmlns")) {
      declarations_.insert(attribute.name.toString(), DecodeReferences(attribute.value));
    }
  }
}

/// Notes what attributes declare. Those of inner elements stand in the text; others go to the root
/// if they can, or else to where they're used.
void RawXmlWriter::DeclareLocally(const std::vector<TextAttribute>& attributes, bool isInText) {
  for (const TextAttribute& attribute : attributes) {
    QStringView prefix;
    if (!IsDeclaration(attribute.name, &prefix) || prefix.isEmpty())
      continue;
    const QString uri = DecodeReferences(attribute.value);
    localPrefixes_.push_back(prefix.toString());
    localUris_[localPrefixes_.back()].push_back({uri, isInText});
    if (!isInText)
      root_.Declare(localPrefixes_.back(), uri);
  }
}

void RawXmlWriter::DropLocal(std::size_t size) {
  for (; localPrefixes_.size() > size; localPrefixes_.pop_back())
    localUris_[localPrefixes_.back()].pop_back();
}

void RawXmlWriter::DropBadDeclarations(std::vector<TextAttribute>& attributes) {
  seen_.clear();
  const auto isBad = [this](const TextAttribute& attribute) {
    QStringView prefix;
    if (!IsDeclaration(attribute.name, &prefix))
      return false;
    const QString uri = DecodeReferences(attribute.value);
    const bool isAllowed = attribute.name == QLatin1String("xmlns")
                               ? uri.isEmpty() || IsDeclarableUri(uri)
                               : IsDeclarablePrefix(prefix) && IsDeclarableUri(uri);
    return !isAllowed || !IsFirst(attribute.name.toString());
  };
  attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isBad), attributes.end());
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
  DropLocal(element.declared);
  if (open_.empty())
    InsertDeclarations();
}

void RawXmlWriter::InsertDeclarations() {
  if (declarations_.isEmpty())
    return;
  Utf8OStream text;
  WriteDeclarations(text);
  stream_.Replace(insertAt_, 0, text.data(), text.size());
}

} // namespace vorrel::kestan
