#include "kestan/core/textfaults.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/host/parse.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// What a text is called that is no `T`.
template <class T> constexpr ReportCode kFault = ReportCode::kBadNumber;
template <> constexpr ReportCode kFault<bool> = ReportCode::kBadBoolean;
template <> constexpr ReportCode kFault<Color32> = ReportCode::kBadColor;
template <> constexpr ReportCode kFault<DateTime> = ReportCode::kBadTime;

/// True when nothing of the text is lost.
template <class T> bool IsWhole(const QString& text) {
  T value{};
  return ConvertFromString(text, value);
}

template <> bool IsWhole<bool>(const QString& text) {
  bool value = false;
  ConvertFromString(text, value);
  const QString word = text.trimmed();
  return value || word == QLatin1String("0") ||
         word.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0;
}

template <> bool IsWhole<Color32>(const QString& text) {
  constexpr int kDigits = 8;
  Color32 value;
  if (!ConvertFromString(text, value) || text.size() < kDigits)
    return false;
  const QString digits = text.right(kDigits);
  const QString prefix = text.left(text.size() - kDigits).toLower();
  const bool isPrefix = prefix.isEmpty() || prefix == QLatin1String("#") ||
                        prefix == QLatin1String("0x") || prefix == QLatin1String("0x#");
  return isPrefix && std::all_of(digits.begin(), digits.end(), [](QChar digit) {
           const ushort unit = digit.toLower().unicode();
           return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'f');
         });
}

bool IsSpace(ushort unit) { return QChar(unit).isSpace(); }

const ushort* SkipSpace(const ushort* at, const ushort* end) {
  return std::find_if_not(at, end, IsSpace);
}

const ushort* FindSpace(const ushort* at, const ushort* end) {
  return std::find_if(at, end, IsSpace);
}

const ushort* FindComponentEnd(const ushort* at, const ushort* end) {
  return std::find_if(at, end, [](ushort unit) { return unit == ',' || IsSpace(unit); });
}

bool IsNumber(const ushort* begin, const ushort* end) {
  double value = 0.0;
  return math::ParseDouble(begin, end, value);
}

} // namespace

void TextFaults::Add(ReportCode code) { Add(code, Begin(), End()); }

void TextFaults::AddAttribute(ReportCode code, const QString& value) { Add(code, -1, value); }

void TextFaults::Add(ReportCode code, const ushort* begin, const ushort* end) {
  begin = SkipSpace(begin, end);
  while (end != begin && IsSpace(end[-1]))
    --end;
  Add(code, static_cast<int>(begin - Begin()),
      QString::fromRawData(reinterpret_cast<const QChar*>(begin), static_cast<int>(end - begin)));
}

void TextFaults::Add(ReportCode code, int begin, const QString& part) {
  const auto known = std::find_if(faults_.begin(), faults_.end(),
                                  [code](const Fault& fault) { return fault.code == code; });
  if (known != faults_.end())
    ++known->count;
  else
    faults_.push_back({code, begin, QString(part.constData(), part.size()), 1});
}

template <class T> void TextFaults::CheckValue(const ushort* begin, const ushort* end) {
  const auto* const characters = reinterpret_cast<const QChar*>(begin);
  if (!IsWhole<T>(QString::fromRawData(characters, static_cast<int>(end - begin))))
    Add(kFault<T>, begin, end);
}

template <> void TextFaults::CheckValue<QString>(const ushort*, const ushort*) {}
template <> void TextFaults::CheckValue<LegacyScreenVec>(const ushort*, const ushort*) {}
template <> void TextFaults::CheckValue<Vec3<double>>(const ushort* begin, const ushort* end) {
  CheckTuple(begin, end, {3, 0, 3, false});
}
template <> void TextFaults::CheckValue<Vec3<float>>(const ushort* begin, const ushort* end) {
  CheckValue<Vec3<double>>(begin, end);
}

void TextFaults::CheckWords(const std::function<bool(const QString&)>& isKnown) {
  for (const ushort* at = SkipSpace(Begin(), End()); at != End();) {
    const ushort* const begin = at;
    at = FindSpace(at, End());
    if (!isKnown(QString(reinterpret_cast<const QChar*>(begin), static_cast<int>(at - begin))))
      Add(ReportCode::kUnknownWord, begin, at);
    at = SkipSpace(at, End());
  }
}

void TextFaults::CheckTuples(const TupleForm& form) {
  const ushort* at = SkipSpace(Begin(), End());
  for (bool isFirst = true; at != End(); isFirst = false) {
    Vec3<double> value;
    const ushort* const next =
        math::ParseUtf16ToVec3(at, End(), value, form.components, form.optional);
    if (!next) {
      Add(ReportCode::kStrayText, at, End());
      return;
    }
    if (!isFirst && !form.isList) {
      Add(ReportCode::kExtraPosition, at, End());
      return;
    }
    CheckTuple(at, next, form);
    at = next;
  }
}

/// Looks at the text of one tuple and at what was passed over in front of it.
void TextFaults::CheckTuple(const ushort* begin, const ushort* end, const TupleForm& form) {
  const ushort* at = SkipSpace(begin, end);
  while (at != end && !IsNumber(at, FindComponentEnd(at, end))) {
    const ushort* const stray = at;
    at = FindSpace(at, end);
    Add(ReportCode::kStrayText, stray, at);
    at = SkipSpace(at, end);
  }
  if (at == end) {
    if (at == begin)
      Add(ReportCode::kBadNumber, begin, end);
    return;
  }
  begin = at;
  int count = 0;
  for (bool isOpen = true; isOpen; ++count) {
    const ushort* const next = FindComponentEnd(at, end);
    if (at == end) {
      Add(ReportCode::kTrailingComma, begin, end);
      break;
    }
    if (!IsNumber(at, next))
      Add(ReportCode::kBadNumber, at, next);
    at = SkipSpace(next, end);
    isOpen = at != end;
    if (isOpen && *at == ',')
      at = SkipSpace(at + 1, end);
  }
  if (count > form.components)
    Add(ReportCode::kLongTuple, begin, end);
  else if (count < form.required)
    Add(ReportCode::kShortTuple, begin, end);
}

template void TextFaults::CheckValue<int>(const ushort*, const ushort*);
template void TextFaults::CheckValue<unsigned int>(const ushort*, const ushort*);
template void TextFaults::CheckValue<unsigned short>(const ushort*, const ushort*);
template void TextFaults::CheckValue<long long>(const ushort*, const ushort*);
template void TextFaults::CheckValue<float>(const ushort*, const ushort*);
template void TextFaults::CheckValue<double>(const ushort*, const ushort*);
template void TextFaults::CheckValue<bool>(const ushort*, const ushort*);
template void TextFaults::CheckValue<Color32>(const ushort*, const ushort*);
template void TextFaults::CheckValue<DateTime>(const ushort*, const ushort*);

} // namespace vorrel::kestan
