#pragma once

#include "kestan/host/memory.h"

#include <QString>

namespace vorrel::kestan {

/// Collects the character data of an element. Doubles as it grows, and keeps its memory for the
/// next element; only what one huge text left behind goes again after many small ones.
class CharBuf {
public:
  /// No text of a document gets longer, so that a QString can hold it, escaped as well.
  static constexpr int kMaxSize = 1 << 28;

  CharBuf() = default;
  ~CharBuf() { doDelete(data_); }
  CharBuf(const CharBuf&) = delete;
  CharBuf& operator=(const CharBuf&) = delete;

  int size() const { return size_; }
  bool isEmpty() const { return size_ == 0; }
  ushort operator[](int i) const { return data_[i]; }
  ushort* data() { return data_; }
  const QChar* constData() const { return reinterpret_cast<const QChar*>(data_); }

  /// Makes room for `n` more characters; false when the text would become too long. From then on
  /// nothing is appended any more until it's cleared.
  bool GrowBy(int n);
  bool IsTooLong() const { return tooLong_; }

  void append(const ushort* text, int length);
  void append(const QString& text) { append(text.utf16(), static_cast<int>(text.size())); }
  void append(QLatin1String text);
  void append(char c);

  /// Shortens the text, or takes in what was put into the room behind it.
  void resize(int size) { size_ = size; }
  void clear();
  /// Gives the memory back too.
  void free();

  /// Drops white space at both ends, in place.
  void trim();
  /// The text without white space at both ends; the null string when nothing is left.
  QString trimmed() const;
  /// The same as a view of the buffer, which ends with the next change.
  QStringView GetTrimmed() const;

private:
  static constexpr int kMinCapacity = 1024;
  static constexpr int kLargeCapacity = 1 << 20;

  void Reallocate(int capacity);

  int size_ = 0;
  int capacity_ = 0;
  int smallTexts_ = 0; ///< Texts in a row that used little of a large buffer.
  bool tooLong_ = false;
  ushort* data_ = nullptr;
};

} // namespace vorrel::kestan
