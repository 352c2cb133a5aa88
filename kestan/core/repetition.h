#pragma once

#include <QtGlobal>

namespace vorrel::kestan {

/// Counts the text that stands in a document once and is made to stand in many places: defaults of
/// a document type, declarations around preserved content. Such text may grow with the length of
/// the document, but not by its square.
class Repetition {
public:
  /// What a document of any length may repeat, and what each of its bytes adds.
  static constexpr qint64 kFreeBytes = qint64(32) << 20;
  static constexpr qint64 kBytesPerByte = 8;

  void Clear() { bytes_ = 0; }
  void Add(qint64 bytes) { bytes_ += bytes; }
  qint64 GetBytes() const { return bytes_; }
  /// True while there's room for so many more bytes in a document of this length.
  bool HasRoomFor(qint64 bytes, qint64 documentBytes) const {
    return bytes_ + bytes <= kFreeBytes + kBytesPerByte * documentBytes;
  }

private:
  qint64 bytes_ = 0;
};

} // namespace vorrel::kestan
