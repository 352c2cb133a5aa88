#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// The reference for writing: appends the pieces of a text that was written before to one growing
/// buffer. Tags, runs of text and white space are one piece each; coordinates are numbers that are
/// converted with `std::to_chars`, general, 16 digits.
class PlainWriter {
public:
  /// Cuts `written` into pieces, and keeps a copy of it. Ends the program unless the pieces give
  /// the same bytes again.
  explicit PlainWriter(const std::string& written);

  /// Writes all pieces to a fresh buffer; answers the number of bytes.
  std::size_t Write() const;

  std::size_t Pieces() const { return pieces_.size(); }
  std::size_t Numbers() const { return numbers_.size(); }

private:
  /// A piece of text, or `tuples` triples of numbers with the text between two of them.
  struct Piece {
    std::string_view text;
    std::size_t tuples;
  };

  class Buffer;

  void Append(Buffer& buffer) const;
  void CutCoordinates(std::string_view text);

  std::string written_;
  std::vector<Piece> pieces_;
  std::vector<double> numbers_;
};

} // namespace bench
