#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstring>
#include <limits>

namespace vorrel::kestan {

/// An append-only buffer of UTF-8 text.
///
/// This view puts text in as it is; `XmlUtf8OStream` and `UrlUtf8OStream` are further views of the
/// same buffer. A surrogate pair becomes one sequence of four bytes. What no XML document may hold
/// (unpaired surrogates, U+FFFE, U+FFFF, control characters) becomes U+FFFD.
class KESTAN_EXPORT Utf8OStream {
public:
  Utf8OStream();
  Utf8OStream(const Utf8OStream&) = delete;
  Utf8OStream& operator=(const Utf8OStream&) = delete;
  ~Utf8OStream();

  const char* data() const { return data_; }
  std::size_t size() const { return size_; }

  /// Bytes as they are; null adds nothing.
  Utf8OStream& operator<<(const char* text) {
    if (text)
      WriteRawBytes(text, std::strlen(text));
    return *this;
  }
  Utf8OStream& operator<<(const QString& text);
  void Write(const QChar* begin, const QChar* end);
  void WriteRawBytes(const char* bytes, std::size_t count) {
    char* const out = Reserve(count);
    std::memcpy(out, bytes, count);
    Commit(out + count);
  }

  /// Room for `count` bytes behind the present end. The caller fills some of them and then says
  /// with `Commit` where the new end is.
  char* Reserve(std::size_t count) {
    if (count > capacity_ - size_)
      Grow(count);
    return data_ + size_;
  }
  void Commit(const char* end) { size_ = static_cast<std::size_t>(end - data_); }

  /// Puts `count` bytes in the place of `length` others.
  void Replace(std::size_t position, std::size_t length, const char* bytes, std::size_t count);

  /// The most that `TakeBytes` can hand over.
  static constexpr std::size_t kMaxArraySize = std::numeric_limits<int>::max() - 64;
  /// The text, of which the stream keeps nothing. Nothing is copied up to 1 GiB. Null when it's too
  /// large for an array.
  QByteArray TakeBytes();

  /// True while the value of an attribute is being written; see `AttributeScope`.
  bool IsInAttribute() const { return inAttribute_; }

private:
  friend class AttributeScope;

  void Grow(std::size_t count);

  QByteArray array_;      ///< Holds the text until that is very large.
  char* large_ = nullptr; ///< Holds it from then on.
  char* data_;            ///< In one of the two.
  std::size_t size_ = 0;
  std::size_t capacity_;
  bool inAttribute_ = false;
};

/// While it lives, what is written stands between the quotes of an attribute: white space goes out
/// as references, since a parser turns it into blanks otherwise.
class AttributeScope {
public:
  explicit AttributeScope(Utf8OStream& stream) : stream_(stream), former_(stream.inAttribute_) {
    stream_.inAttribute_ = true;
  }
  AttributeScope(const AttributeScope&) = delete;
  AttributeScope& operator=(const AttributeScope&) = delete;
  ~AttributeScope() { stream_.inAttribute_ = former_; }

private:
  Utf8OStream& stream_;
  const bool former_;
};

/// Puts text into a buffer as XML character data: the five special characters as entities, a
/// carriage return as a reference.
class KESTAN_EXPORT XmlUtf8OStream {
public:
  explicit XmlUtf8OStream(Utf8OStream& stream) : stream_(stream) {}

  const XmlUtf8OStream& operator<<(const QString& text) const {
    Write(text.constData(), text.constData() + text.size());
    return *this;
  }
  void Write(const QChar* begin, const QChar* end) const;

private:
  Utf8OStream& stream_;
};

/// Puts text into a buffer in the encoding of URL queries and forms: a blank is "+".
class KESTAN_EXPORT UrlUtf8OStream {
public:
  explicit UrlUtf8OStream(Utf8OStream& stream) : stream_(stream) {}

  const UrlUtf8OStream& operator<<(const QString& text) const;

private:
  Utf8OStream& stream_;
};

/// The deepest indentation that is written.
inline constexpr int kMaxIndent = 32;
/// `depth` tabs, at least none and at most `kMaxIndent`.
KESTAN_EXPORT const char* GIndent(int depth);

} // namespace vorrel::kestan
