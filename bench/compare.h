#pragma once

#include <functional>
#include <vector>

namespace bench {

/// The processor time that `action` takes, in seconds: what runs beside it doesn't count.
double Seconds(const std::function<void()>& action);

/// The middle value; of an even number of values, the mean of the two in the middle.
double Median(std::vector<double> values);

/// What one workload took in each round, in seconds.
struct Figures {
  std::vector<double> reference;
  std::vector<double> library;

  /// The library's rate divided by the reference's, by round.
  std::vector<double> Ratios() const;
};

/// Runs the two in turn. A pass before the first round warms caches and the allocator.
/// `library` answers the time itself, since freeing what it made doesn't count.
Figures Compare(int rounds, const std::function<void()>& reference,
                const std::function<double()>& library);

} // namespace bench
