#include "bench/compare.h"

#include <algorithm>

#include <time.h>

namespace bench {

namespace {

double Now() {
  timespec time;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

} // namespace

double Seconds(const std::function<void()>& action) {
  const double start = Now();
  action();
  return Now() - start;
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
