// What extended data cost: placemarks with 20 values each, by the types of a schema and without
// one. Prints microseconds to read and to write a placemark, and the bytes that it takes, by their
// number: all of it is linear.

#include "bench/compare.h"
#include "bench/heap.h"
#include "bench/subject.h"
#include "kestan/custom/schemadata.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

using namespace vorrel::kestan;
using bench::Seconds;

namespace {

constexpr int kValues = 20;

const char* const kTypes[] = {"int", "double", "string", "bool"};

std::string Number(int number) { return std::to_string(number); }

/// The values of a placemark: numbers and short texts in turn.
std::string Value(int i, int placemark) {
  switch (i % 4) {
  case 0:
    return Number(placemark + i);
  case 1:
    return Number(placemark) + ".5";
  case 2:
    return "value " + Number(i);
  default:
    return i % 8 < 4 ? "1" : "0";
  }
}

std::string MakeDocument(bool isTyped, int count) {
  std::string text = "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>";
  if (isTyped) {
    text += "<Schema name=\"T\" id=\"t\">";
    for (int i = 0; i < kValues; ++i) {
      text += std::string("<SimpleField type=\"") + kTypes[i % 4] + "\" name=\"field" + Number(i) +
              "\"/>";
    }
    text += "</Schema>";
  }
  for (int placemark = 0; placemark < count; ++placemark) {
    text += "<Placemark><name>p</name><ExtendedData>";
    text += isTyped ? "<SchemaData schemaUrl=\"#t\">" : "";
    for (int i = 0; i < kValues; ++i) {
      const std::string name = "name=\"field" + Number(i) + "\">";
      const std::string value = Value(i, placemark);
      text += isTyped ? "<SimpleData " + name + value + "</SimpleData>"
                      : "<Data " + name + "<value>" + value + "</value></Data>";
    }
    text += isTyped ? "</SchemaData>" : "";
    text += "</ExtendedData></Placemark>\n";
  }
  return text + "</Document></kml>\n";
}

/// Makes the typed values of all.
double AskForInstances(const bench::Subject::Tree& tree) {
  vorrel::mmvector<SchemaObject*> datas;
  tree->FindBySchema(SchemaData::GetClassSchema(), datas);
  return Seconds([&] {
    for (SchemaObject* data : datas) {
      static_cast<SchemaData*>(data)->GetCustomObject();
    }
  });
}

void Measure(const bench::Subject& subject, bool isTyped, int count) {
  const std::string text = MakeDocument(isTyped, count);
  const std::size_t before = bench::GetHeapSize();
  bench::Subject::Tree tree;
  const double read = Seconds([&] { tree = subject.Read(text); });
  const std::size_t held = bench::GetHeapSize() - before;
  const double write = Seconds([&] { subject.Write(tree); });
  const double ask = isTyped ? AskForInstances(tree) : 0.0;
  const std::size_t typed = bench::GetHeapSize() - before - held;
  const double each = 1e6 / count;
  std::printf("%-16s %8d %10.2f %10.2f %10zu %10.2f %10zu\n", isTyped ? "typed" : "untyped", count,
              read * each, write * each, held / static_cast<std::size_t>(count), ask * each,
              typed / static_cast<std::size_t>(count));
}

} // namespace

int main(int argc, char** argv) {
  const int maxCount = argc > 1 ? std::atoi(argv[1]) : 100000;
  const bench::Subject subject;
  subject.Read(MakeDocument(true, 10)); // what is made once stays out of the figures
  std::printf("%-16s %8s %10s %10s %10s %10s %10s\n", "20 values", "count", "read us", "write us",
              "bytes", "ask us", "bytes");
  for (const bool isTyped : {true, false}) {
    for (int count = 1000; count <= maxCount; count *= 10) {
      Measure(subject, isTyped, count);
    }
  }
  return 0;
}
