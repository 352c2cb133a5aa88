#pragma once

#include <memory>

namespace vorrel::kestan {
class Style;
}

namespace bench {

/// The least that a feature can do to answer its style: a virtual call that returns a stored
/// pointer.
class PlainFeature {
public:
  virtual ~PlainFeature() = default;
  virtual const vorrel::kestan::Style* GetStyle(int mode) const = 0;
};

/// Out of the caller's sight, so that the compiler can't tell which function is called.
std::unique_ptr<PlainFeature> MakePlainFeature(const vorrel::kestan::Style* style);

} // namespace bench
