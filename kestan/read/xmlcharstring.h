#pragma once

#include <memory>
#include <string>

namespace vorrel::kestan {

/// Zero-terminated 16-bit text from an ASCII literal, to compare names of the parser with.
class XmlCharString {
public:
  explicit XmlCharString(const char* ascii)
      : size_(std::char_traits<char>::length(ascii)), data_(new unsigned short[size_ + 1]) {
    for (std::size_t i = 0; i <= size_; ++i)
      data_[i] = static_cast<unsigned char>(ascii[i]);
  }

  const unsigned short* data() const { return data_.get(); }
  std::size_t size() const { return size_; }
  /// Compares with a whole zero-terminated text.
  bool operator==(const unsigned short* text) const {
    std::size_t i = 0;
    while (i < size_ && text[i] == data_[i])
      ++i;
    return i == size_ && text[i] == 0;
  }

private:
  std::size_t size_;
  std::unique_ptr<unsigned short[]> data_;
};

} // namespace vorrel::kestan
