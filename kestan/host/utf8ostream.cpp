#include "kestan/host/utf8ostream.h"

#include "kestan/host/hexencode.h"
#include "kestan/host/memory.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vorrel::kestan {

namespace {

constexpr int kFirstCapacity = 1024;
/// The largest capacity of a byte array.
constexpr std::size_t kMaxArray = std::size_t{1} << 30U;
constexpr unsigned kReplacement = 0xFFFD;

/// Characters that are encoded between two checks of the buffer's room.
constexpr std::ptrdiff_t kBlock = 1024;
/// The longest text that one 16-bit unit becomes: "&quot;".
constexpr std::size_t kMaxBytesPerUnit = 6;
/// Characters that are copied at once. So many bytes are stored, of which fewer may be kept.
constexpr int kStride = 16;
constexpr int kHalfStride = kStride / 2;

enum class Context { kPlain, kElement, kAttribute };

/// One code point as UTF-8.
char* Encode(unsigned c, char* out) {
  const auto put = [&out](unsigned byte) { *out++ = static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
  return out;
}

template <std::size_t N> char* Put(char* out, const char (&text)[N]) {
  std::memcpy(out, text, N - 1);
  return out + (N - 1);
}

template <Context context> char* EncodeAscii(unsigned c, char* out) {
  if constexpr (context != Context::kPlain) {
    switch (c) {
    case '"':
      return Put(out, "&quot;");
    case '&':
      return Put(out, "&amp;");
    case '\'':
      return Put(out, "&apos;");
    case '<':
      return Put(out, "&lt;");
    case '>':
      return Put(out, "&gt;");
    case '\r':
      return Put(out, "&#13;");
    default:
      break;
    }
  }
  if constexpr (context == Context::kAttribute) {
    if (c == '\t')
      return Put(out, "&#9;");
    if (c == '\n')
      return Put(out, "&#10;");
  }
  const bool allowed = c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
  return Encode(allowed ? c : kReplacement, out);
}

/// The code point at `at`, with what no document may hold replaced. Moves `at` behind it.
unsigned DecodeUtf16(const QChar*& at, const QChar* end) {
  const unsigned c = (at++)->unicode();
  if (c < 0xD800)
    return c;
  if (c < 0xDC00 && at != end && at->isLowSurrogate())
    return QChar::surrogateToUcs4(static_cast<ushort>(c), (at++)->unicode());
  return c < 0xE000 || c >= 0xFFFE ? kReplacement : c;
}

/// True for the ASCII characters that are written as they are.
template <Context context> constexpr std::array<bool, 128> MakeCopied() {
  std::array<bool, 128> copied{};
  for (unsigned c = 0x20; c < copied.size(); ++c)
    copied[c] = true;
  copied['\t'] = copied['\n'] = context != Context::kAttribute;
  copied['\r'] = context == Context::kPlain;
  for (const unsigned c : {U'"', U'&', U'\'', U'<', U'>'})
    copied[c] = context == Context::kPlain;
  return copied;
}

template <Context context> constexpr std::array<bool, 128> kCopied = MakeCopied<context>();

#if defined(__SSE2__)

/// A bit for each of the bytes that isn't written as it is.
template <Context context> unsigned FindSpecial(__m128i bytes) {
  const auto equals = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
  // As signed bytes, those beyond ASCII lie below the control characters.
  __m128i good = _mm_cmpgt_epi8(bytes, _mm_set1_epi8(0x1F));
  if constexpr (context != Context::kAttribute)
    good = _mm_or_si128(good, _mm_or_si128(equals('\t'), equals('\n')));
  if constexpr (context != Context::kPlain) {
    __m128i special = _mm_or_si128(equals('"'), equals('&'));
    special = _mm_or_si128(special, equals('\''));
    special = _mm_or_si128(special, _mm_or_si128(equals('<'), equals('>')));
    good = _mm_andnot_si128(special, good);
  }
  return ~static_cast<unsigned>(_mm_movemask_epi8(good)) & 0xFFFFU;
}

__m128i Load(const QChar* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

/// Copies whole strides of characters, up to the first one that isn't written as it is. Units
/// beyond ASCII saturate to 0x80 and more, or to 0 where their sign bit is set.
template <Context context> void CopyAscii(const QChar*& at, const QChar* end, char*& out) {
  const auto advance = [&](unsigned special, int stride) {
    const int count = special ? __builtin_ctz(special) : stride;
    at += count;
    out += count;
    return count == stride;
  };
  while (end - at >= kStride) {
    const __m128i bytes = _mm_packus_epi16(Load(at), Load(at + kHalfStride));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
    if (!advance(FindSpecial<context>(bytes), kStride))
      return;
  }
  if (end - at >= kHalfStride) {
    const __m128i bytes = _mm_packus_epi16(Load(at), _mm_setzero_si128());
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
    advance(FindSpecial<context>(bytes) & 0xFFU, kHalfStride);
  }
}

#else

template <Context context> void CopyAscii(const QChar*&, const QChar*, char*&) {}

#endif

template <Context context>
void Append(Utf8OStream& stream, const QChar* at, const QChar* const end) {
  while (at != end) {
    const QChar* const blockEnd = at + std::min(kBlock, end - at);
    const std::size_t units = static_cast<std::size_t>(blockEnd - at);
    char* out = stream.Reserve(units * kMaxBytesPerUnit + kStride);
    while (at < blockEnd) {
      CopyAscii<context>(at, blockEnd, out);
      // What the strides leave: the end of a block, or a character that isn't copied and those
      // beyond ASCII behind it.
      while (at < blockEnd) {
        const unsigned unit = at->unicode();
        if (unit < 0x80 && kCopied<context>[unit]) {
          *out++ = static_cast<char>(unit);
          ++at;
          continue;
        }
        const unsigned c = DecodeUtf16(at, end);
        out = c < 0x80 ? EncodeAscii<context>(c, out) : Encode(c, out);
        if (blockEnd - at >= kHalfStride && at->unicode() < 0x80)
          break;
      }
    }
    stream.Commit(out);
  }
}

constexpr char kTabs[] = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
static_assert(sizeof(kTabs) == kMaxIndent + 1);

} // namespace

const char* GIndent(int depth) { return kTabs + kMaxIndent - std::clamp(depth, 0, kMaxIndent); }

Utf8OStream::Utf8OStream() : capacity_(kFirstCapacity) {
  array_.reserve(static_cast<int>(capacity_));
  data_ = array_.data();
}

Utf8OStream::~Utf8OStream() { doDelete(large_); }

void Utf8OStream::Grow(std::size_t count) {
  std::size_t capacity = capacity_;
  while (count > capacity - size_)
    capacity *= 2;
  if (capacity <= kMaxArray) {
    array_.resize(static_cast<int>(size_));
    array_.reserve(static_cast<int>(capacity));
    data_ = array_.data();
  } else if (large_) {
    data_ = large_ = static_cast<char*>(Realloc(large_, size_, capacity, nullptr));
  } else {
    large_ = static_cast<char*>(doNew(capacity, nullptr));
    std::memcpy(large_, data_, size_);
    data_ = large_;
    array_ = QByteArray();
  }
  capacity_ = capacity;
}

QByteArray Utf8OStream::TakeBytes() {
  if (large_)
    return size_ <= kMaxArraySize ? QByteArray(data_, static_cast<int>(size_)) : QByteArray();
  array_.resize(static_cast<int>(size_));
  array_.squeeze();
  QByteArray bytes;
  bytes.swap(array_);
  array_.reserve(kFirstCapacity);
  data_ = array_.data();
  size_ = 0;
  capacity_ = kFirstCapacity;
  return bytes;
}

Utf8OStream& Utf8OStream::operator<<(const QString& text) {
  Write(text.constData(), text.constData() + text.size());
  return *this;
}

void Utf8OStream::Write(const QChar* begin, const QChar* end) {
  Append<Context::kPlain>(*this, begin, end);
}

void Utf8OStream::Replace(std::size_t position, std::size_t length, const char* bytes,
                          std::size_t count) {
  Reserve(count);
  const std::size_t tail = position + length;
  std::memmove(data_ + position + count, data_ + tail, size_ - tail);
  std::memcpy(data_ + position, bytes, count);
  size_ = size_ - length + count;
}

void XmlUtf8OStream::Write(const QChar* begin, const QChar* end) const {
  if (stream_.IsInAttribute())
    Append<Context::kAttribute>(stream_, begin, end);
  else
    Append<Context::kElement>(stream_, begin, end);
}

const UrlUtf8OStream& UrlUtf8OStream::operator<<(const QString& text) const {
  const QChar* at = text.constData();
  const QChar* const end = at + text.size();
  while (at != end) {
    const unsigned c = DecodeUtf16(at, end);
    char utf8[4];
    const char* const utf8End = Encode(c, utf8);
    char* out = stream_.Reserve(3 * sizeof(utf8));
    const bool isWord = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (isWord || (c != 0 && c < 0x80 && std::strchr("_-!.*~(')", static_cast<char>(c)))) {
      *out++ = utf8[0];
    } else if (c == ' ') {
      *out++ = '+';
    } else {
      for (const char* byte = utf8; byte != utf8End; ++byte) {
        const auto escaped = HexEncode(static_cast<unsigned char>(*byte));
        out = std::copy(escaped.begin(), escaped.end(), out);
      }
    }
    stream_.Commit(out);
  }
  return *this;
}

} // namespace vorrel::kestan
