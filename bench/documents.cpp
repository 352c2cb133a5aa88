#include "bench/documents.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace bench {

namespace {

/// Appends KML. Its random numbers are the same on every machine.
class Writer {
public:
  explicit Writer(std::size_t bytes) : limit_(bytes) {
    document_.text.reserve(bytes + (bytes >> 4) + 65536);
    Text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n<name>Generated</name>\n");
  }

  Document Finish() {
    Text("</Document>\n</kml>\n");
    return std::move(document_);
  }

  bool Full() const { return document_.text.size() >= limit_; }
  unsigned Random(unsigned below) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<unsigned>((state_ >> 33U) % below);
  }

  void Text(const char* text) { document_.text += text; }
  [[gnu::format(printf, 2, 3)]] void Format(const char* format, ...) {
    char buffer[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof(buffer), format, arguments);
    va_end(arguments);
    document_.text += buffer;
  }

  void Styles() {
    for (int i = 0; i < kStyles; ++i) {
      Format("<Style id=\"s%d\"><LineStyle><color>ff%06x</color><width>%d</width></LineStyle>"
             "</Style>\n",
             i, Random(0x1000000), i % 5 + 1);
    }
  }

  void Tuple() {
    Format("%.7f,%.7f,%.1f", Random(3600000) / 10000.0 - 180.0 + Random(10000) / 1e7,
           Random(1800000) / 10000.0 - 90.0 + Random(10000) / 1e7, Random(40000) / 10.0);
    ++document_.tuples;
  }

  /// `closed` repeats the first position at the end.
  void Coordinates(int count, bool closed = false) {
    Text("<coordinates>");
    const std::size_t first = document_.text.size();
    for (int i = 0; i < count; ++i) {
      if (i > 0) {
        Text(" ");
      }
      Tuple();
    }
    if (closed) {
      const std::size_t length = document_.text.find(' ', first) - first;
      document_.text += ' ';
      document_.text.append(document_.text, first, length);
      ++document_.tuples;
    }
    Text("</coordinates>");
  }

  void StartPlacemark(const char* what) {
    const unsigned number = Random(1000000);
    Format("<Placemark id=\"%s-%zu\">\n<name>%s %06u</name>\n", what, document_.objects, what,
           number);
    document_.objects += 2; // with its geometry
  }

  void Point() {
    Text("<Point>");
    Coordinates(1);
    Text("</Point>\n</Placemark>\n");
  }

  void TextPlacemark() {
    StartPlacemark("Light");
    Format(
        "<description>Light number %u on the north pier, seen at a distance of %u nautical miles "
        "&amp; kept by the harbour master. Flashes white every %u seconds.</description>\n",
        Random(1000), Random(25), Random(12) + 1);
    Format("<styleUrl>#s%u</styleUrl>\n", Random(kStyles));
    Point();
  }

  void Line(int tuples) {
    StartPlacemark("Track");
    Format("<styleUrl>#s%u</styleUrl>\n<LineString><tessellate>1</tessellate>", Random(kStyles));
    Coordinates(tuples);
    Text("</LineString>\n</Placemark>\n");
  }

  void Polygon() {
    StartPlacemark("Area");
    Format("<visibility>0</visibility>\n<Snippet maxLines=\"1\">Area of %u hectares</Snippet>\n"
           "<description><![CDATA[<table><tr><td>Survey</td><td>%u</td></tr></table>]]></"
           "description>\n"
           "<Polygon><altitudeMode>absolute</altitudeMode><outerBoundaryIs><LinearRing>",
           Random(500), Random(30) + 1990);
    Coordinates(30, true);
    Text("</LinearRing></outerBoundaryIs><innerBoundaryIs><LinearRing>");
    Coordinates(8, true);
    Text("</LinearRing></innerBoundaryIs></Polygon>\n</Placemark>\n");
    document_.objects += 2; // the rings
  }

  void Folder() {
    Format("<Folder>\n<name>Sheet %u</name>\n<open>1</open>\n", Random(10000));
    ++document_.objects;
    for (int i = 0; i < 40; ++i) {
      switch (Random(4)) {
      case 0:
        Line(20 + static_cast<int>(Random(40)));
        break;
      case 1:
        Polygon();
        break;
      default:
        TextPlacemark();
      }
    }
    Text("</Folder>\n");
  }

private:
  static constexpr int kStyles = 16;

  Document document_;
  std::size_t limit_;
  std::uint64_t state_ = 1;
};

} // namespace

const char* Name(Kind kind) {
  switch (kind) {
  case Kind::kPlacemarks:
    return "placemarks";
  case Kind::kCoordinates:
    return "coordinates";
  case Kind::kMix:
    break;
  }
  return "mix";
}

Document MakeDocument(Kind kind, std::size_t bytes, int tuples) {
  Writer writer(bytes);
  writer.Styles();
  while (!writer.Full()) {
    switch (kind) {
    case Kind::kPlacemarks:
      writer.TextPlacemark();
      break;
    case Kind::kCoordinates:
      writer.Line(tuples);
      break;
    case Kind::kMix:
      writer.Folder();
      break;
    }
  }
  return writer.Finish();
}

Document MakePoints(std::size_t count) {
  Writer writer(count * 100);
  for (std::size_t i = 0; i < count; ++i) {
    writer.Format("<Placemark><name>Point %06zu</name>", i % 1000000);
    writer.Point();
  }
  return writer.Finish();
}

} // namespace bench
