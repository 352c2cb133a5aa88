#include "kestan/core/kmlid.h"

#include "kestan/host/bytehash.h"

namespace vorrel::kestan {

KmlId::KmlId(const QString& text) {
  const auto hash = text.indexOf(QLatin1Char('#'));
  url = hash < 0 ? text : text.left(hash);
  if (hash >= 0)
    id = text.mid(hash + 1);
}

} // namespace vorrel::kestan

namespace vorrel {

std::uint32_t hash<kestan::KmlId>::operator()(const kestan::KmlId& key) const {
  if (key.id.isEmpty())
    return 0;
  return ByteHash(key.id, ByteHash(key.url, kByteHashSeed));
}

} // namespace vorrel
