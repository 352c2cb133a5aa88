#include "kestan/core/screenvecfield.h"

#include "kestan/core/convertfromstring.h"

namespace vorrel::kestan {

LegacyScreenVec ReadLegacyScreenVec(const AttributeList* attrs, AttributeList* others) {
  LegacyScreenVec value{};
  if (!attrs)
    return value;
  for (const auto& attr : *attrs) {
    const QString& name = attr.first;
    if (name == QLatin1String("x"))
      ConvertFromString(attr.second, value.x);
    else if (name == QLatin1String("y"))
      ConvertFromString(attr.second, value.y);
    else if (name == QLatin1String("xunits"))
      value.xunits = LegacyScreenVec::UnitsFromString(attr.second);
    else if (name == QLatin1String("yunits"))
      value.yunits = LegacyScreenVec::UnitsFromString(attr.second);
    else if (others)
      others->push_back(attr);
  }
  return value;
}

FromStringResult ScreenVecField::fromString(SchemaObject& object, const AttributeList* attrs,
                                            const NamespaceList* namespaces, const QString&, int,
                                            Update* update) const {
  AttributeList others;
  const LegacyScreenVec value = ReadLegacyScreenVec(attrs, &others);
  return Store(object, value, &others, namespaces, update);
}

} // namespace vorrel::kestan
