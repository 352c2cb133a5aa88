// Looks for documents that cost more than in proportion: reads, writes, clones and drops each
// pattern in one size and in four times that size, and prints those whose cost grows more than
// sixfold.

#include "bench/compare.h"
#include "bench/heap.h"
#include "bench/patterns.h"
#include "bench/subject.h"

#include "kestan/read/kmlhandler.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace vorrel::kestan;

namespace bench {

namespace {

constexpr double kGrowth = 6.0;
// Below these a growth says nothing.
constexpr double kLeastSeconds = 0.002;
constexpr double kLeastBytes = 1 << 20;
/// A time that is much longer than the ticks of any clock, and for documents that no cache holds.
constexpr double kSureSeconds = 1.0;
/// A cost that seems to grow is the least of so many measurements.
constexpr int kRounds = 5;
/// A pattern gets this much processor time, in seconds, and memory.
constexpr rlim_t kMaxSeconds = 240;
constexpr rlim_t kMaxBytes = rlim_t{4} << 30U;

struct Options {
  int count = 1000;
  std::string filter;
  bool lists = false;
};

/// What is measured of a document, in the order of its names.
constexpr const char* kNames[] = {"read", "write", "clone", "drop", "memory"};
constexpr std::size_t kMemory = 4;

struct Cost {
  double amounts[5] = {}; ///< Seconds; the memory in bytes.
  std::size_t bytes = 0;
  bool isRead = false;
};

Cost Measure(const std::string& text) {
  Cost cost;
  cost.bytes = text.size();
  const std::size_t before = GetHeapSize();
  ResetHeapPeak();
  Subject::Tree tree;
  Subject::Tree copy;
  cost.amounts[0] = Seconds([&] {
    KmlHandler handler(QStringLiteral("http://example.com/sweep.kml"), 2, nullptr, nullptr,
                       nullptr);
    tree = ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(text.data()),
                                 text.size());
  });
  if (tree) {
    cost.isRead = true;
    QByteArray written;
    cost.amounts[1] = Seconds([&] { tree->WriteKmlString(written); });
    cost.amounts[2] = Seconds([&] { copy = tree->clone(true, nullptr); });
    cost.amounts[3] = Seconds([&] {
      copy.reset();
      tree.reset();
    });
  }
  cost.amounts[kMemory] = static_cast<double>(GetHeapPeak() - before);
  return cost;
}

bool Grows(double small, double large, std::size_t what) {
  return large > kGrowth * std::max(small, what == kMemory ? kLeastBytes : kLeastSeconds);
}

/// One cost of a document and of one that is four times as large.
struct Growth {
  double small;
  double large;
  std::size_t smallBytes;
  std::size_t largeBytes;
};

double MeasureLeast(const std::string& text, std::size_t what) {
  double least = Measure(text).amounts[what];
  for (int round = 1; round < kRounds; ++round) {
    least = std::min(least, Measure(text).amounts[what]);
  }
  return least;
}

/// Looks again at a cost that seems to grow. What takes a short time is measured in larger
/// documents. False when it doesn't grow.
bool Confirm(const Pattern& pattern, int count, std::size_t what, Growth& growth) {
  for (;; count *= 4) {
    const std::string small = pattern.make(count);
    const std::string large = pattern.make(4 * count);
    growth = {MeasureLeast(small, what), MeasureLeast(large, what), small.size(), large.size()};
    if (!Grows(growth.small, growth.large, what)) {
      return false;
    }
    if (what == kMemory || growth.large >= kSureSeconds) {
      return true;
    }
  }
}

/// Prints what is wrong with a pattern; answers whether anything is.
bool Check(const Pattern& pattern, int count) {
  const Cost a = Measure(pattern.make(count));
  const Cost b = Measure(pattern.make(4 * count));
  bool found = false;
  if (a.isRead != b.isRead) {
    std::printf("%s: %zu bytes are read, %zu aren't\n", pattern.name.c_str(),
                a.isRead ? a.bytes : b.bytes, a.isRead ? b.bytes : a.bytes);
    found = true;
  }
  for (std::size_t what = 0; what < std::size(kNames); ++what) {
    Growth growth{};
    if (!Grows(a.amounts[what], b.amounts[what], what) || !Confirm(pattern, count, what, growth)) {
      continue;
    }
    found = true;
    const double unit = what == kMemory ? 1e-6 : 1e3;
    std::printf("%s: %s %.1f %s of %zu bytes, %.1f of %zu, %.1f times as much\n",
                pattern.name.c_str(), kNames[what], growth.small * unit,
                what == kMemory ? "MB" : "ms", growth.smallBytes, growth.large * unit,
                growth.largeBytes, growth.large / std::max(growth.small, 1e-6));
  }
  std::fflush(stdout);
  return found;
}

/// The same in a process of its own, which may die.
bool CheckApart(const Pattern& pattern, int count) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    const rlimit time{kMaxSeconds, kMaxSeconds};
    const rlimit memory{kMaxBytes, kMaxBytes};
    setrlimit(RLIMIT_CPU, &time);
    setrlimit(RLIMIT_AS, &memory);
    _exit(Check(pattern, count) ? 1 : 0);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    std::perror("fork");
    std::exit(2);
  }
  if (WIFSIGNALED(status)) {
    std::printf("%s: ended by %s\n", pattern.name.c_str(), strsignal(WTERMSIG(status)));
  }
  return !WIFEXITED(status) || WEXITSTATUS(status) != 0;
}

/// False when the arguments aren't understood.
bool Parse(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--count" && i + 1 < argc) {
      options.count = std::atoi(argv[++i]);
    } else if (argument == "--list") {
      options.lists = true;
    } else if (options.filter.empty() && argument[0] != '-') {
      options.filter = argument;
    } else {
      return false;
    }
  }
  return options.count > 0;
}

} // namespace

} // namespace bench

int main(int argc, char** argv) {
  using namespace bench;
  Options options;
  if (!Parse(argc, argv, options)) {
    std::fputs("usage: kestan-bench-sweep [--count N] [--list] [TEXT]\n", stderr);
    return 2;
  }
  const Subject subject;
  int patterns = 0;
  int found = 0;
  ForEachPattern([&](const Pattern& pattern) {
    if (pattern.name.find(options.filter) == std::string::npos) {
      return;
    }
    ++patterns;
    if (options.lists) {
      std::printf("%s, %zu bytes\n", pattern.name.c_str(), pattern.make(options.count).size());
    } else {
      found += CheckApart(pattern, std::max(options.count, pattern.leastCount));
    }
  });
  std::printf("%d patterns, %d of them cost more than in proportion\n", patterns, found);
  return found == 0 ? 0 : 1;
}
