#include "kestan/write/markuptext.h"

#include "kestan/core/schemaobject.h"
#include "kestan/write/writestate.h"
#include "kestan/write/xmltext.h"

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

/// Goes through the image tags of a text as a browser reads them.
class ImageSources {
public:
  explicit ImageSources(QStringView text) : text_(text) {}

  /// The value of the next tag's source, as it stands in the text; null when there's none.
  QStringView Next() {
    while (FindTag()) {
      const QStringView source = FindSource();
      if (!source.isNull())
        return source;
    }
    return {};
  }

private:
  /// Goes behind the name of the next image tag.
  bool FindTag() {
    for (;; ++at_) {
      at_ = text_.indexOf(QLatin1Char('<'), at_);
      if (at_ < 0)
        return false;
      qsizetype name = at_ + 1;
      SkipSpace(name);
      const QStringView rest = text_.mid(name);
      if (rest.startsWith(QLatin1String("img"), Qt::CaseInsensitive) && rest.size() > 3 &&
          rest[3].isSpace()) {
        at_ = name + 3;
        return true;
      }
    }
  }

  /// Goes through the attributes of the tag, up to its source or its end.
  QStringView FindSource() {
    for (;;) {
      while (at_ < text_.size() && (text_[at_].isSpace() || text_[at_] == '/'))
        ++at_;
      if (at_ == text_.size() || text_[at_] == '>' || text_[at_] == '<')
        return {};
      const qsizetype begin = at_;
      while (at_ < text_.size() && !text_[at_].isSpace() &&
             !QStringView(u"/>=<").contains(text_[at_]))
        ++at_;
      const QStringView name = text_.mid(begin, at_ - begin);
      SkipSpace(at_);
      if (at_ == text_.size() || text_[at_] != '=')
        continue;
      ++at_;
      const QStringView value = TakeValue();
      if (!value.isNull() && name.compare(QLatin1String("src"), Qt::CaseInsensitive) == 0)
        return value;
    }
  }

  /// Goes behind the value; null for one without quotes.
  QStringView TakeValue() {
    SkipSpace(at_);
    const QChar quote = at_ < text_.size() ? text_[at_] : QChar();
    if (quote == '"' || quote == '\'') {
      qsizetype& known = quote == '"' ? nextDouble_ : nextSingle_;
      if (known <= at_ && known >= 0) // otherwise it's still ahead, or there's no further one
        known = text_.indexOf(quote, at_ + 1);
      if (known > at_) {
        const QStringView value = text_.mid(at_ + 1, known - at_ - 1);
        at_ = known + 1;
        return value;
      }
      ++at_;
    }
    while (at_ < text_.size() && !text_[at_].isSpace() && text_[at_] != '>')
      ++at_;
    return {};
  }

  void SkipSpace(qsizetype& at) const {
    while (at < text_.size() && text_[at].isSpace())
      ++at;
  }

  QStringView text_;
  qsizetype at_ = 0;
  qsizetype nextDouble_ = 0; ///< The next quote that closes a value; negative when there's none.
  qsizetype nextSingle_ = 0;
};

void Append(QString& result, QStringView text) {
  result.append(text.data(), static_cast<int>(text.size()));
}

QString ReplaceImageSources(const QString& text, const SchemaObject& object, WriteState& state) {
  const QStringView whole(text);
  ImageSources sources(whole);
  QString result;
  qsizetype copied = 0;
  for (QStringView raw = sources.Next(); !raw.isNull(); raw = sources.Next()) {
    if (BeginsWithEntity(raw))
      continue;
    const QString source = DecodeReferences(raw);
    const QString absolute = SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), source);
    const QString written = state.RegisterUrl(source, absolute, true, &object);
    if (written == source)
      continue; // however it is escaped
    const qsizetype start = raw.data() - whole.data();
    Append(result, whole.mid(copied, start - copied));
    result.append(raw == source ? written : written.toHtmlEscaped());
    copied = start + raw.size();
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
