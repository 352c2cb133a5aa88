#include "kestan/write/markuptext.h"

#include "kestan/core/schemaobject.h"
#include "kestan/write/writestate.h"
#include "kestan/write/xmltext.h"

#include <QRegularExpression>
#include <QString>

namespace vorrel::kestan {

namespace {

/// True for a "$[name]" in front, which the balloon replaces.
bool BeginsWithEntity(const QString& source) {
  static const QRegularExpression entity(QStringLiteral("^\\$\\[\\w+\\]"),
                                         QRegularExpression::UseUnicodePropertiesOption);
  return entity.match(source).hasMatch();
}

QString ReplaceImageSources(const QString& text, const SchemaObject& object, WriteState& state) {
  static const QRegularExpression image(QStringLiteral("<\\s*img\\s+[^>]*>"),
                                        QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression attribute(
      QStringLiteral("(src\\s*=\\s*[\"'])([^\"']*)([\"'])"),
      QRegularExpression::CaseInsensitiveOption);
  QString result;
  int copied = 0;
  for (auto images = image.globalMatch(text); images.hasNext();) {
    const QRegularExpressionMatch tag = images.next();
    const QRegularExpressionMatch match = attribute.match(tag.capturedRef());
    if (!match.hasMatch() || BeginsWithEntity(match.captured(2)))
      continue;
    const QString source = match.captured(2);
    const QString absolute = SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), source);
    const int start = tag.capturedStart() + match.capturedStart(2);
    result.append(text.midRef(copied, start - copied));
    result.append(state.RegisterUrl(source, absolute, true));
    copied = start + source.size();
  }
  return copied == 0 ? text : result + text.midRef(copied);
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
