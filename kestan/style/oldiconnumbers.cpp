// Numbers of old icons. Their palettes had eight rows of tiles where those of today have five.

#include "kestan/style/icon.h"
#include "kestan/style/iconpalette.h"

#include <algorithm>

namespace vorrel::kestan {

unsigned short Icon::GetOldNormal(unsigned short old) {
  const unsigned cleared = old & 16U ? 32U : 48U;
  return static_cast<unsigned short>(old & ~cleared);
}

unsigned short Icon::GetOldHighlight(unsigned short old) {
  return static_cast<unsigned short>(GetOldNormal(old) | 32U);
}

int Icon::OldRowToNew(int row) {
  constexpr int kNewRows[] = {0, 1, 1, 2, 3, 3, 4, 4};
  return kNewRows[std::clamp(row, 0, kTilesPerSide - 1)];
}

unsigned short Icon::OldToNew(int palette, int row, int column) {
  return static_cast<unsigned short>(OldRowToNew(row) * 16 | (column & 7) | palette << 8);
}

unsigned short Icon::OldToNew(unsigned short old) {
  const int group = (old & 48) >> 4;
  int row = 0;
  if (old & 8)
    row = group < 2 ? group + 3 : 5;
  else if (old & 16)
    row = old & 32 ? 7 : 6;
  else
    row = std::min(group, 2);
  return OldToNew(old >> 8, row, old & 7);
}

} // namespace vorrel::kestan
