#pragma once

#include "kestan/core/objurlfield.h"
#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

template <class T, class Target>
ObjUrlField<T, Target>::ObjUrlField(Schema& schema, const QString& name, unsigned offset,
                                    Field::Type type, unsigned flags, unsigned targetOffset)
    : ObjUrlFieldBase(schema, name, offset, type, flags), targetOffset_(targetOffset) {}

template <class T, class Target>
SchemaObject* ObjUrlField<T, Target>::GetTarget(const SchemaObject& object) const {
  return this->template Member<Target>(object, targetOffset_).get();
}

} // namespace vorrel::kestan
