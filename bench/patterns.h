#pragma once

#include <functional>
#include <string>

namespace bench {

/// A kind of document that may be of any size.
struct Pattern {
  std::string name;
  /// The document in which the pattern comes `count` times.
  std::function<std::string(int count)> make;
  /// Below this its cost may grow by the square: the format has one text stand in many places, and
  /// only what's beyond the library's limit for that must be in proportion.
  int leastCount = 1;
};

/// Gives the patterns that follow from the tables of the library's classes: whatever a document can
/// hold, again and again, and behind whatever else it can hold. Then those that no table tells, of
/// names, namespaces and unknown content. The library must be started.
void ForEachPattern(const std::function<void(const Pattern&)>& visit);

} // namespace bench
