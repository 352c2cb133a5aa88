#include "kestan/core/valuetext.h"

#include "kestan/host/numberformat.h"
#include "kestan/host/utf8ostream.h"

#include <cmath>

namespace vorrel::kestan {

namespace {

/// Calls `format(buffer)`, which answers the count of characters, on room for `room` of them.
template <class Format> void Print(Utf8OStream& stream, std::size_t room, Format format) {
  char* const out = stream.Reserve(room);
  stream.Commit(out + format(out));
}

template <class T> void WriteTriple(Utf8OStream& stream, const Vec3<T>& value) {
  WriteValueText(stream, value.x);
  stream << ",";
  WriteValueText(stream, value.y);
  stream << ",";
  WriteValueText(stream, value.z);
}

} // namespace

void WriteValueText(Utf8OStream& stream, int value) {
  WriteValueText(stream, static_cast<long long>(value));
}

void WriteValueText(Utf8OStream& stream, unsigned int value) {
  WriteValueText(stream, static_cast<long long>(value));
}

void WriteValueText(Utf8OStream& stream, unsigned short value) {
  WriteValueText(stream, static_cast<long long>(value));
}

void WriteValueText(Utf8OStream& stream, long long value) {
  Print(stream, kMaxNumberLength, [value](char* out) { return FormatInt(value, out); });
}

void WriteValueText(Utf8OStream& stream, bool value) { stream << (value ? "1" : "0"); }

void WriteValueText(Utf8OStream& stream, float value) {
  value = std::isfinite(value) ? value : 0.0F;
  Print(stream, kMaxNumberLength, [value](char* out) { return FormatFloat(value, out); });
}

void WriteValueText(Utf8OStream& stream, double value) {
  value = std::isfinite(value) ? value : 0.0;
  Print(stream, kMaxNumberLength, [value](char* out) { return FormatDouble(value, out); });
}

void WriteValueText(Utf8OStream& stream, const QString& value) { XmlUtf8OStream(stream) << value; }

void WriteValueText(Utf8OStream& stream, Color32 value) {
  constexpr int kDigits = 8;
  Print(stream, kDigits, [value](char* out) {
    for (int i = 0; i < kDigits; ++i)
      out[i] = "0123456789abcdef"[value.value >> (4 * (kDigits - 1 - i)) & 0xFU];
    return kDigits;
  });
}

void WriteValueText(Utf8OStream& stream, const DateTime& value) {
  Print(stream, DateTime::kMaxLength, [&value](char* out) { return value.Print(out); });
}

void WriteValueText(Utf8OStream& stream, const Vec3<double>& value) { WriteTriple(stream, value); }

void WriteValueText(Utf8OStream& stream, const Vec3<float>& value) { WriteTriple(stream, value); }

void WriteValueText(Utf8OStream& stream, const LegacyScreenVec& value) {
  stream << "<x units=\"" << LegacyScreenVec::UnitsToString(value.xunits) << "\">";
  WriteValueText(stream, value.x);
  stream << "</x><y units=\"" << LegacyScreenVec::UnitsToString(value.yunits) << "\">";
  WriteValueText(stream, value.y);
  stream << "</y>";
}

} // namespace vorrel::kestan
