#include "kestan/core/objurlfield.h"

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

ObjUrlFieldBase::ObjUrlFieldBase(Schema& schema, const QString& name, unsigned offset,
                                 Field::Type type, unsigned flags)
    : StrField(schema, name, offset, type, flags) {
  schema.AddReference(*this);
}

void ObjUrlFieldBase::clone(SchemaObject& dst, const SchemaObject& src, bool) const {
  const KmlId id = SchemaObject::MakeAbsoluteId(src.GetBaseUrl(), get(src));
  SetTypedObject(dst, id.id.isEmpty() ? id.url : id.url + QLatin1Char('#') + id.id);
}

} // namespace vorrel::kestan
