#include "kestan/style/iconrectangle.h"

#include "kestan/style/iconpalette.h"

#include <QStringList>

#include <algorithm>

namespace vorrel::kestan {

const char* const IconRectangle::kParameters[] = {"x=", "y=", "w=", "h="};

void IconRectangle::TakeQuery(QString& href) {
  queried_ = Sides();
  int start = -1;
  while ((start = static_cast<int>(href.lastIndexOf(QLatin1Char('?')))) >= 0) {
    while (href.endsWith(QLatin1Char('&')))
      href.chop(1);
    if (href.size() > start + 1)
      break;
    href.truncate(start);
  }
  hasQuery_ = start >= 0;
  if (!hasQuery_)
    return;
  for (const QString& parameter : href.mid(start + 1).split(QLatin1Char('&'))) {
    for (int side = kX; side <= kH; ++side) {
      if (queried_.Has(side) || !parameter.startsWith(QLatin1String(kParameters[side])))
        continue;
      bool isNumber = false;
      const int value = parameter.mid(2).toInt(&isNumber);
      if (isNumber)
        queried_.Set(side, side == kW || side == kH ? std::max(value, -1) : value);
    }
  }
}

std::optional<std::int32_t> IconRectangle::Get(int side) const {
  for (const Sides* sides : {&set_, &queried_}) {
    if (sides->Has(side))
      return sides->values[side];
  }
  const bool isSize = side == kW || side == kH;
  if (isSize && hasQuery_ && (Get(kX).value_or(0) > 0 || Get(kY).value_or(0) > 0))
    return kTileSize;
  return std::nullopt;
}

} // namespace vorrel::kestan
