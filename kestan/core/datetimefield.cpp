#include "kestan/core/datetimefield.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

FromStringResult DateTimeField::fromString(SchemaObject& object, const AttributeList* attrs,
                                           const NamespaceList* namespaces, const QString& text,
                                           int index, Update* update) const {
  const DeletionDeferrer deferrer;
  if (update && KeepsRest(object, update) && ValueFromString<DateTime>(text).isUndefined())
    update = nullptr; // there's nothing to come
  const FromStringResult result =
      SimpleField::fromString(object, attrs, namespaces, text, index, update);
  if (!update && IsUndefined(object) && !text.isEmpty())
    object.KeepText(*this, text);
  return result;
}

bool DateTimeField::IsUndefined(const SchemaObject& object) const {
  return Member<DateTime>(object).isUndefined();
}

} // namespace vorrel::kestan
