#include "bench/compare.h"

#include <algorithm>
#include <chrono>

namespace bench {

double Seconds(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

std::vector<double> Figures::Ratios() const {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < library.size(); ++i) {
    ratios.push_back(reference[i] / library[i]);
  }
  return ratios;
}

Figures Compare(int rounds, const std::function<void()>& reference,
                const std::function<double()>& library) {
  Figures figures;
  reference();
  library();
  for (int round = 0; round < rounds; ++round) {
    figures.reference.push_back(Seconds(reference));
    figures.library.push_back(library());
  }
  return figures;
}

} // namespace bench
