#pragma once

namespace vorrel::kestan {

/// The version of KML that the library writes.
inline constexpr char kKmlVersionString[] = "2.2";
inline constexpr int kKmlVersionNumberMajor = 2;
inline constexpr int kKmlVersionNumberMinor = 2;
inline constexpr int kUnspecifiedVersion = -1;

/// The vocabulary that an element or attribute name belongs to.
enum class Namespace {
  kNone = 0,    ///< The empty URI.
  kUnknown = 1, ///< A URI that isn't recognised, or a prefix without a declaration.
  kKml = 2,
  kExt = 3, ///< The extension vocabulary, prefix "gx".
  kWms = 4,
  kAtom = 5,
  kXal = 6,
};

inline constexpr char kKmlPrefix[] = "kml";
inline constexpr char kKmlPrefixColon[] = "kml:";
inline constexpr char kExtPrefix[] = "gx";
inline constexpr char kExtPrefixColon[] = "gx:";
inline constexpr char kWmsPrefix[] = "wms";
inline constexpr char kWmsPrefixColon[] = "wms:";
inline constexpr char kAtomPrefix[] = "atom";
inline constexpr char kAtomPrefixColon[] = "atom:";
inline constexpr char kXalPrefix[] = "xal";
inline constexpr char kXalPrefixColon[] = "xal:";

} // namespace vorrel::kestan
