#include "kestan/read/rawxml.h"

#include "kestan/host/attributevalue.h"

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

namespace {

const QLatin1String kCdataStart("<![CDATA[");
const QLatin1String kCdataEnd("]]>");

bool EndsWithBrackets(const CharBuf& text) {
  return text.size() >= 2 && text[text.size() - 1] == ']' && text[text.size() - 2] == ']';
}

} // namespace

void RawXml::AppendAttribute(const ushort* name, const ushort* value) {
  out_.append(' ');
  out_.append(name, static_cast<int>(std::char_traits<char16_t>::length(
                        reinterpret_cast<const char16_t*>(name))));
  out_.append(QLatin1String("=\""));
  for (; *value; ++value) {
    if (const char* const reference = GetAttributeReference(*value))
      out_.append(QLatin1String(reference));
    else
      out_.append(value, 1);
  }
  out_.append('"');
}

void RawXml::AppendText(const ushort* text, int length) {
  const ushort* const end = text + length;
  while (text != end) {
    const ushort* const special = std::find_if(
        text, end, [](ushort c) { return c == '&' || c == '<' || c == '>' || c == '\r'; });
    out_.append(text, static_cast<int>(special - text));
    if (special == end)
      return;
    text = special + 1;
    switch (*special) {
    case '\r':
      out_.append(QLatin1String("&#13;"));
      break;
    case '>':
      out_.append(EndsWithBrackets(out_) ? QLatin1String("&gt;") : QLatin1String(">"));
      break;
    default:
      out_.append(kCdataStart);
      out_.append(special, 1);
      out_.append(kCdataEnd);
    }
  }
}

void RawXml::StartCdata() { lineStart_ = out_.size(); }

void RawXml::AppendCdata(const ushort* text, int length) {
  const ushort* const end = text + length;
  while (text != end) {
    const ushort* const lineEnd = std::find(text, end, '\n');
    out_.append(text, static_cast<int>(lineEnd - text));
    text = lineEnd;
    if (lineEnd != end) {
      EndCdataLine();
      out_.append('\n');
      lineStart_ = out_.size();
      ++text;
    }
  }
}

void RawXml::EndCdata() { EndCdataLine(); }

void RawXml::EndCdataLine() {
  const ushort* const line = out_.data() + lineStart_;
  const int length = out_.size() - lineStart_;
  bool special = std::any_of(line, line + length, [](ushort c) { return c == '&' || c == '<'; });
  // Text in front of the section may end in brackets that a ">" in the section would complete.
  for (int i = std::max(lineStart_, 2); !special && i < std::min(lineStart_ + 2, out_.size()); ++i)
    special = out_[i] == '>' && out_[i - 1] == ']' && out_[i - 2] == ']';
  if (!special)
    return;
  const QString content(reinterpret_cast<const QChar*>(line), length);
  if (!out_.GrowBy(static_cast<int>(kCdataStart.size() + kCdataEnd.size()))) // may move the line
    return;
  out_.resize(lineStart_);
  out_.append(kCdataStart);
  out_.append(content);
  out_.append(kCdataEnd);
}

} // namespace vorrel::kestan
