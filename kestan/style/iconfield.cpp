#include "kestan/style/iconfield.h"

#include "kestan/core/objectobserver.h"

namespace vorrel::kestan {

IconField::IconField(Schema& schema, unsigned offset, unsigned flags)
    : ObjField(schema, QString(), Icon::GetClassSchema(), offset, flags) {}

bool IconField::equals(const SchemaObject& a, const SchemaObject& b) const {
  const auto* x = static_cast<const Icon*>(GetObject(a, -1));
  const auto* y = static_cast<const Icon*>(GetObject(b, -1));
  return x && y ? *x == *y : x == y;
}

void IconField::CheckSet(SchemaObject& object, Icon* icon, unsigned& specified) const {
  // The mask is part of the object, which may be gone behind the notice.
  ObjectObserver::SetSpecified(object, specified, specified | GetMaskBit());
  CheckSet(object, icon);
}

} // namespace vorrel::kestan
