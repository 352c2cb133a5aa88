#include "kestan/write/markuptext.h"

#include "kestan/core/schemaobject.h"
#include "kestan/write/writestate.h"
#include "kestan/write/xmltext.h"

#include <QRegularExpression>
#include <QString>
#include <QStringView>

#include <algorithm>

namespace vorrel::kestan {

namespace {

bool IsWordChar(QChar c) { return c.isLetterOrNumber() || c.isMark() || c == '_'; }

/// True for a "$[name]" in front, which the balloon replaces.
bool BeginsWithEntity(QStringView source) {
  if (!source.startsWith(u"$["))
    return false;
  const auto end = std::find_if_not(source.begin() + 2, source.end(), IsWordChar);
  return end != source.begin() + 2 && end != source.end() && *end == ']';
}

/// The next image tag from `from` on, empty when there's none.
QStringView FindImageTag(QStringView text, qsizetype from) {
  const auto isSpace = [](QChar c) { return c.isSpace(); };
  for (auto at = text.begin() + from;; ++at) {
    at = std::find(at, text.end(), QLatin1Char('<'));
    if (at == text.end())
      return {};
    const auto name = std::find_if_not(at + 1, text.end(), isSpace);
    const QStringView rest = text.mid(name - text.begin());
    if (!rest.startsWith(QLatin1String("img"), Qt::CaseInsensitive) || rest.size() < 4 ||
        !rest[3].isSpace())
      continue;
    const auto end = std::find(rest.begin(), rest.end(), QLatin1Char('>'));
    if (end == rest.end())
      return {}; // no tag ends behind this one either
    return text.mid(at - text.begin(), end + 1 - at);
  }
}

void Append(QString& result, QStringView text) {
  result.append(text.data(), static_cast<int>(text.size()));
}

QString ReplaceImageSources(const QString& text, const SchemaObject& object, WriteState& state) {
  static const QRegularExpression attribute(QStringLiteral("(src\\s*=\\s*[\"'])([^\"']*)([\"'])"),
                                            QRegularExpression::CaseInsensitiveOption);
  const QStringView whole(text);
  QString result;
  qsizetype copied = 0;
  for (QStringView tag = FindImageTag(whole, 0); !tag.isEmpty();) {
    const qsizetype tagStart = tag.data() - whole.data();
    const QRegularExpressionMatch match = attribute.match(tag.toString());
    const QString source = match.captured(2);
    if (match.hasMatch() && !BeginsWithEntity(source)) {
      const QString absolute = SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), source);
      const qsizetype sourceStart = tagStart + match.capturedStart(2);
      Append(result, whole.mid(copied, sourceStart - copied));
      result.append(state.RegisterUrl(source, absolute, true, &object));
      copied = sourceStart + source.size();
    }
    tag = FindImageTag(whole, tagStart + tag.size());
  }
  Append(result, whole.mid(copied));
  return result;
}

bool HoldsImages(const QString& text) {
  return text.contains(QLatin1String("img"), Qt::CaseInsensitive);
}

} // namespace

void WriteMarkupText(const QString& text, const SchemaObject& object, WriteState& state) {
  // A text that begins with a CDATA section of its own is markup like any other: to a reader, the
  // section's marks would no longer be part of the text.
  if (state.stream().IsInAttribute() || !text.contains(QLatin1Char('<')))
    state.xml() << text;
  else if (HoldsImages(text))
    WriteCdataSection(state.stream(), ReplaceImageSources(text, object, state));
  else
    WriteCdataSection(state.stream(), text);
}

} // namespace vorrel::kestan
