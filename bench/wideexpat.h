#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// The reference for reading: expat's wide build, with empty handlers.
///
/// The narrow build, which the library links, exports the same names. So the wide one is loaded
/// into a scope of its own that prefers its own symbols.
class WideExpat {
public:
  /// Ends the program with a message unless it's really the wide build that answers.
  WideExpat();
  ~WideExpat();
  WideExpat(const WideExpat&) = delete;
  WideExpat& operator=(const WideExpat&) = delete;

  /// Parses the whole text. Ends the program when it isn't well-formed.
  void Parse(const std::string& text) const;

  /// Number of elements, for checking the reference itself.
  std::size_t CountElements(const std::string& text) const;

private:
  struct Api;
  Api* api_;
};

} // namespace bench
