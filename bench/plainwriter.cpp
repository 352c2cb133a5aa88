#include "bench/plainwriter.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {

class PlainWriter::Buffer {
public:
  ~Buffer() { std::free(data_); }

  void Append(std::string_view text) {
    Reserve(text.size());
    std::memcpy(data_ + size_, text.data(), text.size());
    size_ += text.size();
  }

  void Append(char character) {
    Reserve(1);
    data_[size_++] = character;
  }

  void Append(double number) {
    Reserve(32);
    const auto result =
        std::to_chars(data_ + size_, data_ + capacity_, number, std::chars_format::general, 16);
    size_ = static_cast<std::size_t>(result.ptr - data_);
  }

  std::string_view View() const { return {data_, size_}; }

private:
  void Reserve(std::size_t more) {
    if (capacity_ - size_ >= more) {
      return;
    }
    while (capacity_ - size_ < more) {
      capacity_ *= 2;
    }
    data_ = static_cast<char*>(std::realloc(data_, capacity_));
  }

  std::size_t size_ = 0;
  std::size_t capacity_ = 1024;
  char* data_ = static_cast<char*>(std::malloc(capacity_));
};

namespace {

bool IsBlank(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

std::size_t BlankLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && IsBlank(text[length])) {
    ++length;
  }
  return length;
}

} // namespace

PlainWriter::PlainWriter(const std::string& written) : written_(written) {
  std::string_view rest = written_;
  bool coordinates = false;
  while (!rest.empty()) {
    std::size_t length = BlankLength(rest);
    if (length == 0 && rest.front() == '<') {
      length = rest.substr(0, 9) == "<![CDATA[" ? rest.find("]]>") + 3 : rest.find('>') + 1;
      coordinates = rest.substr(0, 12) == "<coordinates";
    } else if (coordinates) {
      length = rest.find('<');
      CutCoordinates(rest.substr(0, length));
      rest.remove_prefix(length);
      continue;
    } else if (length == 0) {
      length = rest.find('<');
    }
    pieces_.push_back({rest.substr(0, length), 0});
    rest.remove_prefix(length);
  }

  Buffer buffer;
  Append(buffer);
  // The library writes the shortest digits that read back, where 16 of them may show the rounding
  // of a double, and then make the text longer.
  const double ratio =
      static_cast<double>(buffer.View().size()) / static_cast<double>(written_.size());
  if (ratio < 0.99 || ratio > 1.5) {
    std::fputs("plain writer: the pieces don't give the text again\n", stderr);
    std::exit(1);
  }
}

void PlainWriter::CutCoordinates(std::string_view text) {
  std::string_view rest = text;
  std::size_t run = pieces_.size(); // index of the piece that tuples are added to
  while (!rest.empty()) {
    const std::size_t blanks = BlankLength(rest);
    if (blanks > 0) {
      const std::string_view separator = rest.substr(0, blanks);
      rest.remove_prefix(blanks);
      const bool open = run < pieces_.size();
      if (open && pieces_[run].tuples == 1 && !rest.empty()) {
        pieces_[run].text = separator;
      } else if (!open || rest.empty() || pieces_[run].text != separator) {
        pieces_.push_back({separator, 0});
        run = pieces_.size();
      }
      continue;
    }
    for (int i = 0; i < 3; ++i) {
      double number = 0;
      const auto result = std::from_chars(rest.data(), rest.data() + rest.size(), number);
      if (result.ptr == rest.data()) {
        std::fputs("plain writer: coordinates without three numbers\n", stderr);
        std::exit(1);
      }
      numbers_.push_back(number);
      rest.remove_prefix(static_cast<std::size_t>(result.ptr - rest.data()) + (i < 2 ? 1 : 0));
    }
    if (run == pieces_.size()) {
      pieces_.push_back({{}, 1});
    } else {
      ++pieces_[run].tuples;
    }
  }
}

void PlainWriter::Append(Buffer& buffer) const {
  const double* number = numbers_.data();
  for (const Piece& piece : pieces_) {
    if (piece.tuples == 0) {
      buffer.Append(piece.text);
      continue;
    }
    for (std::size_t i = 0; i < piece.tuples; ++i, number += 3) {
      if (i > 0) {
        buffer.Append(piece.text);
      }
      buffer.Append(number[0]);
      buffer.Append(',');
      buffer.Append(number[1]);
      buffer.Append(',');
      buffer.Append(number[2]);
    }
  }
}

std::size_t PlainWriter::Write() const {
  Buffer buffer;
  Append(buffer);
  return buffer.View().size();
}

} // namespace bench
