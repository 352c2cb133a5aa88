// Prints what trees occupy: bytes of one Placemark with a name and a Point, bytes of one tuple of
// a long coordinate list, and the peak of a parse against what the tree then holds.

#include "bench/documents.h"
#include "bench/heap.h"
#include "bench/subject.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace {

using namespace bench;

struct Held {
  std::size_t tree; ///< What the tree holds when the parse is over.
  std::size_t peak; ///< Most that was held at a time during the parse.
};

Held Measure(const Subject& subject, const std::string& text) {
  const std::size_t before = GetHeapSize();
  ResetHeapPeak();
  const Subject::Tree tree = subject.Read(text);
  return {GetHeapSize() - before, GetHeapPeak() - before};
}

/// Block of a string's characters: header of Qt's array, two bytes a character and the final null.
std::size_t TextBlock(std::size_t characters) { return GetBlockSize(24 + 2 * (characters + 1)); }

void Print(const char* name, const Document& document, const Held& held) {
  std::printf("%-24s %10.1f MB text %10.1f MB tree %10.1f MB peak   peak/tree %.2f (target 2.00)\n",
              name, static_cast<double>(document.text.size()) / 1e6,
              static_cast<double>(held.tree) / 1e6, static_cast<double>(held.peak) / 1e6,
              static_cast<double>(held.peak) / static_cast<double>(held.tree));
}

} // namespace

int main() {
  const Subject subject;
  subject.Read(MakePoints(10).text); // what is made once stays out of the figures

  constexpr std::size_t kPoints = 200000;
  const Document points = MakePoints(kPoints);
  const Held pointsHeld = Measure(subject, points.text);
  const double each = static_cast<double>(pointsHeld.tree) / static_cast<double>(kPoints);
  const std::size_t name = TextBlock(std::strlen("Point 000000"));
  std::printf(
      "Placemark with name and Point: %.0f bytes, of which %zu are its text; beyond it %.0f "
      "(target 560)\n",
      each, name, each - static_cast<double>(name));

  const Document lines = MakeDocument(Kind::kCoordinates, 32U << 20U, 20000);
  const Held linesHeld = Measure(subject, lines.text);
  std::printf("tuple of a long list: %.2f bytes (target %.1f)\n",
              static_cast<double>(linesHeld.tree) / static_cast<double>(lines.tuples), 24 * 1.1);

  Print("points", points, pointsHeld);
  Print("coordinates", lines, linesHeld);
  for (const Kind kind : {Kind::kPlacemarks, Kind::kMix}) {
    const Document document = MakeDocument(kind, 32U << 20U);
    Print(Name(kind), document, Measure(subject, document.text));
  }
  return 0;
}
