#include "kestan/style/iconpalette.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace vorrel::kestan {

namespace {

constexpr int kFirstPalette = 2;
constexpr int kLastPalette = 5;
constexpr int kIconsPerPalette = kTilesPerSide * kTilesPerSide;

using Row = const char* const[kTilesPerSide];

constexpr char kPushpin[] = "pushpin/ylw-pushpin";

constexpr Row kServices = {"shapes/police", "shapes/pharmacy_rx", "shapes/schools", "shapes/church",
                           "shapes/parks",  "shapes/golf",        kPushpin,         kPushpin};
constexpr Row kRoads = {
    "shapes/road_shield1", "shapes/road_shield2", "shapes/road_shield3", "shapes/bars",
    "shapes/lodging",      "shapes/gas_stations", "shapes/movies",       kPushpin};
constexpr Row kDining = {"shapes/dining", "shapes/dining", "shapes/dining", "shapes/dining",
                         "shapes/dining", "shapes/dining", "shapes/dining", "paddle/pause"};
constexpr Row kTravel = {"shapes/airports", "shapes/play",   "shapes/dollar", "shapes/dollar",
                         "shapes/dollar",   "shapes/dollar", "shapes/coffee", "shapes/dining"};

constexpr Row kOneToEight = {"paddle/1", "paddle/2", "paddle/3", "paddle/4",
                             "paddle/5", "paddle/6", "paddle/7", "paddle/8"};
constexpr Row kNineAndOutdoors = {"paddle/9",         "paddle/10",          "shapes/shopping",
                                  "shapes/mountains", "shapes/cross-hairs", "shapes/terrain",
                                  "shapes/mountains", "shapes/schools"};
constexpr Row kWarnings = {"shapes/cross-hairs", "shapes/caution", "shapes/caution",
                           "shapes/info-i",      "shapes/info-i",  "shapes/caution",
                           "shapes/hospitals",   "shapes/caution"};
constexpr Row kHomeHighlight = {"shapes/homegardenbusiness",
                                kPushpin,
                                "shapes/sunny",
                                "shapes/caution",
                                "shapes/cross-hairs_highlight",
                                "shapes/placemark_square_highlight",
                                kPushpin,
                                kPushpin};
constexpr Row kHome = {
    "shapes/homegardenbusiness", kPushpin, "shapes/sunny", "shapes/caution", "shapes/cross-hairs",
    "shapes/placemark_square",   kPushpin, kPushpin};

constexpr Row kShopping = {kPushpin,          kPushpin,          kPushpin,
                           "shapes/shopping", "shapes/shopping", "shapes/shopping",
                           "shapes/shopping", "paddle/stop"};
constexpr Row kPlacesHighlight = {"shapes/placemark_square_highlight",
                                  "shapes/placemark_circle_highlight",
                                  "shapes/placemark_square_highlight",
                                  "shapes/placemark_square_highlight",
                                  "shapes/arrow",
                                  "shapes/flag",
                                  "shapes/sunny",
                                  "paddle/pause"};
constexpr Row kPlaces = {"shapes/placemark_square",
                         "shapes/placemark_circle",
                         "shapes/placemark_square",
                         "shapes/placemark_square",
                         "shapes/arrow",
                         "shapes/flag",
                         "shapes/sunny",
                         "paddle/pause"};
constexpr Row kWeather = {
    "shapes/rainy",        "shapes/sunny",  "shapes/partly_cloudy", "shapes/snowflake_simple",
    "shapes/thunderstorm", "shapes/webcam", "shapes/camera",        "shapes/star"};
constexpr Row kCapitalsHighlight = {"shapes/placemark_square_highlight",
                                    "shapes/placemark_circle_highlight",
                                    "shapes/capital_big_highlight",
                                    "shapes/capital_small_highlight",
                                    "shapes/mountains",
                                    "shapes/flag",
                                    "paddle/go",
                                    "shapes/hospitals"};
constexpr Row kCapitals = {"shapes/placemark_square",
                           "shapes/placemark_circle",
                           "shapes/capital_big",
                           "shapes/capital_small",
                           "shapes/mountains",
                           "shapes/flag",
                           "paddle/go",
                           "shapes/hospitals"};

constexpr Row kYAndRealEstate = {"paddle/Y",     "paddle/Z",          "shapes/realestate",
                                 kPushpin,       "shapes/realestate", "shapes/ruler",
                                 "shapes/arrow", "shapes/broken_link"};
constexpr Row kYAndHighway = {"paddle/Y", "paddle/Z",          "shapes/realestate",
                              kPushpin,   "shapes/realestate", "shapes/flag",
                              kPushpin,   "shapes/highway"};
constexpr Row kQToX = {"paddle/Q", "paddle/R", "paddle/S", "paddle/T",
                       "paddle/U", "paddle/V", "paddle/W", "paddle/X"};
constexpr Row kIToP = {"paddle/I", "paddle/J", "paddle/K", "paddle/L",
                       "paddle/M", "paddle/N", "paddle/O", "paddle/P"};
constexpr Row kAToH = {"paddle/A", "paddle/B", "paddle/C", "paddle/D",
                       "paddle/E", "paddle/F", "paddle/G", "paddle/H"};

/// The palettes, their rows from the bottom of the image up.
constexpr const Row* kPalettes[][kTilesPerSide] = {
    {&kServices, &kServices, &kRoads, &kRoads, &kDining, &kDining, &kTravel, &kTravel},
    {&kOneToEight, &kOneToEight, &kNineAndOutdoors, &kNineAndOutdoors, &kWarnings, &kWarnings,
     &kHomeHighlight, &kHome},
    {&kShopping, &kShopping, &kPlacesHighlight, &kPlaces, &kWeather, &kWeather, &kCapitalsHighlight,
     &kCapitals},
    {&kYAndRealEstate, &kYAndHighway, &kQToX, &kQToX, &kIToP, &kIToP, &kAToH, &kAToH}};

constexpr unsigned short CentredKey(int palette, int index) {
  return static_cast<unsigned short>(palette * kIconsPerPalette + index);
}

/// Sorted.
constexpr unsigned short kCentred[] = {
    CentredKey(2, 16), CentredKey(2, 17), CentredKey(2, 18), CentredKey(2, 24), CentredKey(2, 25),
    CentredKey(2, 26), CentredKey(3, 20), CentredKey(3, 28), CentredKey(3, 32), CentredKey(3, 40),
    CentredKey(3, 52), CentredKey(3, 53), CentredKey(3, 60), CentredKey(3, 61), CentredKey(4, 16),
    CentredKey(4, 17), CentredKey(4, 18), CentredKey(4, 19), CentredKey(4, 24), CentredKey(4, 25),
    CentredKey(4, 26), CentredKey(4, 27), CentredKey(4, 48), CentredKey(4, 49), CentredKey(4, 50),
    CentredKey(4, 51), CentredKey(4, 56), CentredKey(4, 57), CentredKey(4, 58), CentredKey(4, 59),
    CentredKey(5, 5),  CentredKey(5, 7),  CentredKey(5, 15)};

QLatin1String ShapeAt(int palette, int index) {
  const Row& row = *kPalettes[palette - kFirstPalette][index / kTilesPerSide];
  return QLatin1String(row[index % kTilesPerSide]);
}

QSet<QString> CollectShapes() {
  QSet<QString> shapes;
  for (int palette = kFirstPalette; palette <= kLastPalette; ++palette) {
    for (int index = 0; index < kIconsPerPalette; ++index)
      shapes.insert(ShapeAt(palette, index));
  }
  return shapes;
}

} // namespace

QString MakePaletteUrl(int palette) {
  return QStringLiteral("root://icons/palette-%1.png").arg(palette);
}

QString MapTexIdToIconFile(unsigned short texId) {
  const int column = texId & 15;
  const int row = (texId >> 4) & 15;
  return QStringLiteral("%1pal%2/icon%3.png")
      .arg(QLatin1String(kIconServerBase))
      .arg(texId >> 8)
      .arg(column + (kTilesPerSide - 1 - row) * kTilesPerSide);
}

bool IsValidPalIconIdAndMapIndex(short palette, int index) {
  return palette >= kFirstPalette && palette <= kLastPalette && index >= 0 &&
         index < kIconsPerPalette;
}

QString GetShapeOfPaletteIcon(short palette, int index) {
  if (IsValidPalIconIdAndMapIndex(palette, index))
    return ShapeAt(palette, index);
  return QStringLiteral("pal%1/icon%2").arg(palette).arg(index);
}

bool IsCentredPaletteIcon(short palette, int index) {
  return IsValidPalIconIdAndMapIndex(palette, index) &&
         std::binary_search(std::begin(kCentred), std::end(kCentred), CentredKey(palette, index));
}

bool IsPaletteShape(const QString& name) {
  static const QSet<QString> shapes = CollectShapes();
  return shapes.contains(name);
}

} // namespace vorrel::kestan
