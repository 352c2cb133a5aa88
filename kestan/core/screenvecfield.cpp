#include "kestan/core/screenvecfield.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/core/textfaults.h"

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

void ScreenVecField::FindFaults(const SchemaObject&, const AttributeList* attrs,
                                TextFaults& faults) const {
  if (!faults.GetText().isEmpty())
    faults.Add(ReportCode::kStrayText);
  for (const auto& [name, value] : attrs ? *attrs : AttributeList()) {
    double number = 0.0;
    const bool isNumber = name == QLatin1String("x") || name == QLatin1String("y");
    const bool isUnit = name == QLatin1String("xunits") || name == QLatin1String("yunits");
    if (isNumber && !ConvertFromString(value, number))
      faults.AddAttribute(ReportCode::kBadNumber, value);
    const auto units = LegacyScreenVec::UnitsFromString(value);
    if (isUnit && LegacyScreenVec::UnitsToString(units) != value)
      faults.AddAttribute(ReportCode::kBadUnit, value);
  }
}

} // namespace vorrel::kestan
