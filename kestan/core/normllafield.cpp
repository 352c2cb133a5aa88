#include "kestan/core/normllafield.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/textfaults.h"
#include "kestan/host/convert.h"
#include "kestan/host/numberformat.h"

#include <algorithm>

namespace vorrel::kestan {

FromStringResult NormLLAField::fromString(SchemaObject& object, const AttributeList* attrs,
                                          const NamespaceList* namespaces, const QString& text, int,
                                          Update* update) const {
  Vec3<double> numbers{0.0, 0.0, 0.0};
  const bool isPosition = ConvertFromString(text, numbers);
  Vec3<double> position = convert::LLAToNorm(numbers);
  position.x = std::clamp(position.x, -180.0, 180.0);
  position.y = std::clamp(position.y, -180.0, 180.0);
  const DeletionDeferrer deferrer;
  if (!isPosition && KeepsRest(object, update))
    update = nullptr; // there's nothing to come
  const FromStringResult result = Store(object, position, attrs, namespaces, update);
  if (!update && !isPosition)
    object.KeepText(*this, text);
  return result;
}

void NormLLAField::FindFaults(const SchemaObject& object, const AttributeList*,
                              TextFaults& faults) const {
  faults.CheckTuples({3, 0, 2, false});
  const auto given = ValueFromString<Vec3<double>>(faults.GetText());
  if (faults.IsEmpty() && get(object) != convert::LLAToNorm(given))
    faults.Add(ReportCode::kLimitedValue);
}

QString NormLLAField::toString(const SchemaObject& object, int) const {
  char buffer[kMaxNormLLALength];
  const int size = FormatNormLLA(get(object), ',', buffer);
  return QString::fromLatin1(buffer, size);
}

} // namespace vorrel::kestan
