#pragma once

#include "kestan/host/export.h"

#include <QString>

namespace vorrel::kestan {

/// Base of the icon set that clients have built in.
inline constexpr char kIconServerBase[] = "http://maps.vorrel.com/mapfiles/kml/";

/// Width and height of a palette's tile in pixels, and the number of tiles in a row and in a
/// column.
inline constexpr int kTileSize = 32;
inline constexpr int kTilesPerSide = 8;

/// URL of the image with all tiles of a palette.
KESTAN_EXPORT QString MakePaletteUrl(int palette);

/// URL of the file with one tile of a palette: palette in bits 8 to 15, row from the top in bits 4
/// to 7, column in bits 0 to 3.
KESTAN_EXPORT QString MapTexIdToIconFile(unsigned short texId);

/// True for an icon index, counted from the bottom row up, of one of the palettes.
KESTAN_EXPORT bool IsValidPalIconIdAndMapIndex(short palette, int index);

/// Name of the shape that has taken the place of a palette's icon. An icon that isn't valid has a
/// name all the same, to which no shape belongs.
KESTAN_EXPORT QString GetShapeOfPaletteIcon(short palette, int index);

/// True for an icon that marks a place with its centre; the others do with their lower edge.
KESTAN_EXPORT bool IsCentredPaletteIcon(short palette, int index);

/// True for the name of a shape of the palettes.
KESTAN_EXPORT bool IsPaletteShape(const QString& name);

} // namespace vorrel::kestan
