// Measures the library against its references in turn, and prints the median of the ratios.
// kestan-bench-ratios [--rounds N] [--megabytes N] [read|write|lists|sizes]...

#include "bench/documents.h"
#include "bench/plainwriter.h"
#include "bench/subject.h"
#include "bench/wideexpat.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(const std::function<void()>& action) {
  const auto start = Clock::now();
  action();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

struct Options {
  int rounds = 7;
  std::size_t megabytes = 32;
  std::vector<std::string> parts;

  bool Wants(const char* part) const {
    return parts.empty() || std::find(parts.begin(), parts.end(), part) != parts.end();
  }
};

/// What one workload took. Times are those of one run, in seconds.
struct Figures {
  std::vector<double> reference;
  std::vector<double> library;

  std::vector<double> Ratios() const {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < library.size(); ++i) {
      ratios.push_back(reference[i] / library[i]);
    }
    return ratios;
  }
};

/// Runs the two in turn. A pass before the first round warms caches and the allocator.
/// `library` answers the time itself, since freeing what it made doesn't count.
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

void PrintHead(const char* title) {
  std::printf("\n%-26s %6s %6s %6s %6s | %9s %9s %12s\n", title, "target", "median", "min", "max",
              "MB/s", "ref MB/s", "objects/s");
}

void Print(const std::string& name, double target, const Figures& figures, std::size_t bytes,
           std::size_t objects) {
  const std::vector<double> ratios = figures.Ratios();
  const double library = Median(figures.library);
  const double megabytes = static_cast<double>(bytes) / 1e6;
  std::string goal = "-";
  if (target > 0) {
    char text[16];
    std::snprintf(text, sizeof(text), "%.2f", target);
    goal = text;
  }
  std::printf("%-26s %6s %6.2f %6.2f %6.2f | %9.1f %9.1f %12.0f\n", name.c_str(), goal.c_str(),
              Median(ratios), *std::min_element(ratios.begin(), ratios.end()),
              *std::max_element(ratios.begin(), ratios.end()), megabytes / library,
              megabytes / Median(figures.reference), static_cast<double>(objects) / library);
  std::fflush(stdout);
}

Figures CompareReading(const Options& options, const Subject& subject, const WideExpat& expat,
                       const Document& document) {
  return Compare(
      options.rounds, [&] { expat.Parse(document.text); },
      [&] {
        Subject::Tree tree;
        return Seconds([&] { tree = subject.Read(document.text); });
      });
}

struct Workload {
  Kind kind;
  double readTarget;
  double writeTarget;
};
constexpr Workload kWorkloads[] = {
    {Kind::kPlacemarks, 0.55, 0.75}, {Kind::kCoordinates, 0.75, 0.90}, {Kind::kMix, 0.45, 0.70}};

void Read(const Options& options, const Subject& subject, const WideExpat& expat) {
  PrintHead("reading / wide expat");
  for (const Workload& workload : kWorkloads) {
    const Document document = MakeDocument(workload.kind, options.megabytes << 20U);
    Print(Name(workload.kind), workload.readTarget,
          CompareReading(options, subject, expat, document), document.text.size(),
          document.objects);
  }
}

void Write(const Options& options, const Subject& subject) {
  PrintHead("writing / plain appending");
  for (const Workload& workload : kWorkloads) {
    const Document document = MakeDocument(workload.kind, options.megabytes << 20U);
    const Subject::Tree tree = subject.Read(document.text);
    const std::string written = subject.Write(tree).toStdString();
    const PlainWriter plain(written);
    const Figures figures = Compare(
        options.rounds,
        [&] {
          if (plain.Write() == 0) {
            std::abort();
          }
        },
        [&] {
          QByteArray bytes;
          return Seconds([&] { bytes = subject.Write(tree); });
        });
    Print(Name(workload.kind), workload.writeTarget, figures, written.size(), document.objects);
  }
}

void Lists(const Options& options, const Subject& subject, const WideExpat& expat) {
  PrintHead("reading, by list length");
  for (const int tuples : {500, 1000, 2000, 5000, 10000, 20000}) {
    const Document document = MakeDocument(Kind::kCoordinates, options.megabytes << 20U, tuples);
    Print(std::to_string(tuples) + " tuples", 0.75,
          CompareReading(options, subject, expat, document), document.text.size(), document.tuples);
  }
}

void Sizes(const Options& options, const Subject& subject, const WideExpat& expat) {
  PrintHead("reading, by size");
  for (const Workload& workload : kWorkloads) {
    for (const std::size_t megabytes : {1, 4, 16, 64, 256}) {
      const Document document = MakeDocument(workload.kind, megabytes << 20U);
      Print(std::string(Name(workload.kind)) + ", " + std::to_string(megabytes) + " MB",
            workload.readTarget, CompareReading(options, subject, expat, document),
            document.text.size(), document.objects);
    }
  }
}

/// False when the arguments aren't understood.
bool Parse(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--rounds" && i + 1 < argc) {
      options.rounds = std::atoi(argv[++i]);
    } else if (argument == "--megabytes" && i + 1 < argc) {
      options.megabytes = static_cast<std::size_t>(std::atoi(argv[++i]));
    } else if (argument == "read" || argument == "write" || argument == "lists" ||
               argument == "sizes") {
      options.parts.push_back(argument);
    } else {
      return false;
    }
  }
  return options.rounds > 0 && options.megabytes > 0;
}

} // namespace

} // namespace bench

int main(int argc, char** argv) {
  using namespace bench;
  Options options;
  if (!Parse(argc, argv, options)) {
    std::fputs(
        "usage: kestan-bench-ratios [--rounds N] [--megabytes N] [read|write|lists|sizes]...\n",
        stderr);
    return 2;
  }
  const WideExpat expat;
  const Subject subject;
  std::printf("%d rounds, library and reference in turn; ratio of their rates\n", options.rounds);
  if (options.Wants("read")) {
    Read(options, subject, expat);
  }
  if (options.Wants("write")) {
    Write(options, subject);
  }
  if (options.Wants("lists")) {
    Lists(options, subject, expat);
  }
  if (options.Wants("sizes")) {
    Sizes(options, subject, expat);
  }
  return 0;
}
