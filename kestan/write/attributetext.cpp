#include "kestan/write/attributetext.h"

#include "kestan/write/xmlname.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

bool TakeAttribute(QStringView& text, TextAttribute& attribute) {
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

} // namespace

QStringView TakeName(QStringView& text) {
  if (text.isEmpty() || !IsNameStart(text.front()))
    return {};
  const auto end = std::find_if_not(text.begin(), text.end(), IsNameChar);
  const QStringView name = text.left(end - text.begin());
  text = text.mid(name.size());
  return name;
}

std::vector<TextAttribute> TakeAttributes(QStringView& text) {
  std::vector<TextAttribute> attributes;
  TextAttribute attribute;
  while (TakeAttribute(text, attribute))
    attributes.push_back(attribute);
  return attributes;
}

bool IsDeclaration(QStringView name, QStringView* prefix) {
  constexpr QStringView kXmlns = u"xmlns";
  constexpr QStringView kXmlnsColon = u"xmlns:";
  if (name != kXmlns && !name.startsWith(kXmlnsColon))
    return false;
  if (prefix)
    *prefix = name == kXmlns ? QStringView() : name.mid(kXmlnsColon.size());
  return true;
}

} // namespace vorrel::kestan
