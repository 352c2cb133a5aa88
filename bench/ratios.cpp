// Measures the library against its references in turn, and prints the median of the ratios.
// kestan-bench-ratios [--rounds N] [--megabytes N]
//     [read|write|lists|sizes|styles|changes|references]...

#include "bench/compare.h"
#include "bench/documents.h"
#include "bench/plainwriter.h"
#include "bench/scenes.h"
#include "bench/subject.h"
#include "bench/wideexpat.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace bench {

namespace {

constexpr const char* kParts[] = {"read",   "write",   "lists",     "sizes",
                                  "styles", "changes", "references"};

struct Options {
  int rounds = 7;
  std::size_t megabytes = 32;
  std::vector<std::string> parts;

  bool Wants(const char* part) const {
    return parts.empty() || std::find(parts.begin(), parts.end(), part) != parts.end();
  }
};

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

constexpr std::size_t kCounts[] = {1000, 10000, 100000};

void PrintCostHead(const char* title) {
  std::printf("\n%-44s %7s %9s %9s | %7s %7s %7s\n", title, "count", "ns each", "ref ns", "median",
              "min", "max");
}

/// Here the ratio is that of the times: how often the reference fits into the library's.
void PrintCost(const char* name, std::size_t count, std::size_t operations,
               const Figures& figures) {
  const std::vector<double> rates = figures.Ratios();
  const auto nanoseconds = [operations](const std::vector<double>& seconds) {
    return Median(seconds) / static_cast<double>(operations) * 1e9;
  };
  std::printf("%-44s %7zu %9.1f %9.1f | %7.2f %7.2f %7.2f\n", name, count,
              nanoseconds(figures.library), nanoseconds(figures.reference), 1.0 / Median(rates),
              1.0 / *std::max_element(rates.begin(), rates.end()),
              1.0 / *std::min_element(rates.begin(), rates.end()));
  std::fflush(stdout);
}

/// So many passes over small sets that the clock can tell them.
std::size_t GetPasses(std::size_t count) {
  return 100 * kCounts[0] / std::min(count, 100 * kCounts[0]);
}

/// Ends the program when something that was counted didn't happen; keeps calls alive too.
void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

void Styles(const Options& options, const Subject& subject) {
  PrintCostHead("getRenderStyle / plain virtual call");
  for (const Look look : {Look::kShared, Look::kMerged, Look::kMap}) {
    for (const std::size_t count : kCounts) {
      const StyledFeatures features(subject, look, count);
      const std::size_t passes = GetPasses(count);
      const auto repeat = [passes](const auto& ask) {
        std::uintptr_t sum = 0;
        for (std::size_t i = 0; i < passes; ++i) {
          sum += ask();
        }
        Require(sum != 0);
      };
      PrintCost(Name(look), count, count * passes,
                Compare(
                    options.rounds, [&] { repeat([&] { return features.AskPlain(); }); },
                    [&] { return Seconds([&] { repeat([&] { return features.Ask(); }); }); }));
    }
  }
  PrintCostHead("the first call after a change of the style");
  for (const Look look : {Look::kMerged, Look::kOwn}) {
    for (const std::size_t count : kCounts) {
      StyledFeatures features(subject, look, count);
      PrintCost(Name(look), count, count,
                Compare(
                    options.rounds, [&] { Require(features.AskPlain() != 0); },
                    [&] {
                      features.ChangeSharedStyle();
                      return Seconds([&] { Require(features.Ask() != 0); });
                    }));
    }
  }
  PrintCostHead("a change of a style, by its features");
  for (const Look look : {Look::kShared, Look::kMap}) {
    for (const std::size_t count : kCounts) {
      StyledFeatures features(subject, look, count);
      PrintCost(Name(look), count, count,
                Compare(
                    options.rounds, [&] { Require(features.AskPlain() != 0); },
                    [&] { return Seconds([&] { features.ChangeSharedStyle(); }); }));
    }
  }
}

void Changes(const Options& options, const Subject& subject) {
  PrintCostHead("a field change / plain virtual call");
  for (const Audience audience :
       {Audience::kNobody, Audience::kObserver, Audience::kOwners, Audience::kObservedOwners}) {
    for (const std::size_t count : kCounts) {
      WatchedFeatures features(subject, audience, count);
      const StyledFeatures plain(subject, Look::kShared, count);
      const std::size_t passes = GetPasses(count);
      const bool isHeard = audience == Audience::kObserver || audience == Audience::kObservedOwners;
      const std::size_t notices = features.GetNotices();
      PrintCost(Name(audience), count, count * passes,
                Compare(
                    options.rounds,
                    [&] {
                      for (std::size_t i = 0; i < passes; ++i) {
                        Require(plain.AskPlain() != 0);
                      }
                    },
                    [&] {
                      return Seconds([&] {
                        for (std::size_t i = 0; i < passes; ++i) {
                          features.Change();
                        }
                      });
                    }));
      Require((features.GetNotices() - notices >= count) == isHeard);
    }
  }
}

void ForwardReferences(const Options& options, const Subject& subject) {
  PrintCostHead("loading a feature with a styleUrl / behind it");
  struct Case {
    const char* name;
    References references;
  };
  for (const Case& c : {Case{"forward, a style for each", References::kForward},
                        Case{"forward, one style for all", References::kForwardToOne}}) {
    for (const std::size_t count : kCounts) {
      const std::string text = MakeReferences(c.references, count);
      const std::string other = MakeReferences(
          c.references == References::kForward ? References::kBackward : References::kBackwardToOne,
          count);
      PrintCost(c.name, count, count,
                Compare(
                    options.rounds, [&] { subject.Read(other); },
                    [&] { return Seconds([&] { subject.Read(text); }); }));
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
    } else if (std::find(std::begin(kParts), std::end(kParts), argument) != std::end(kParts)) {
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
    std::fputs("usage: kestan-bench-ratios [--rounds N] [--megabytes N] "
               "[read|write|lists|sizes|styles|changes|references]...\n",
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
  if (options.Wants("styles")) {
    Styles(options, subject);
  }
  if (options.Wants("changes")) {
    Changes(options, subject);
  }
  if (options.Wants("references")) {
    ForwardReferences(options, subject);
  }
  return 0;
}
