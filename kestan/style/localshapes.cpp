#include "kestan/style/localshapes.h"

#include "kestan/style/iconpalette.h"

namespace vorrel::kestan {

ResourceRecord LocalShapes::Find(const QString& name, const QString& type) const {
  if (type != QLatin1String(ResourceManager::kResourceTypePng) || !IsPaletteShape(name))
    return {};
  return {true, QLatin1String(kIconServerBase) + name + QLatin1Char('.') + type};
}

} // namespace vorrel::kestan
