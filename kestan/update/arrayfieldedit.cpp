// The updating half of the fields with arrays of values.

#include "kestan/update/arrayfieldedit.h"

#include "kestan/core/color32.h"
#include "kestan/core/fieldrest.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/datetime.h"
#include "kestan/host/vec3.h"

#include <utility>

namespace vorrel::kestan {

template <class E>
ArrayFieldEdit<E>::ArrayFieldEdit(const TypedArrayField<E>& field, SchemaObject& object,
                                  Update& update)
    : UpdateEdit(object, update, field), others_(field.GetState(object)) {}

template <class E> void ArrayFieldEdit<E>::Exchange() const {
  SchemaObject& object = GetObject();
  const auto& field = static_cast<const TypedArrayField<E>&>(GetField());
  isBack_ = !isBack_;
  const FieldRestoration restoration(object, field, SwapRest().get());
  field.Exchange(object, others_);
}

template <class E>
bool TypedArrayField<E>::StartUpdate(SchemaObject& object, Update& update) const {
  if (!UpdateEdit::CheckUpdateSecurity(*this, object, update))
    return false;
  if (!object.GetBit(kBitDeleting) && UpdateEdit::IsFirstOf(*this, object, update))
    new ArrayFieldEdit<E>(*this, object, update); // the update's from now on
  return true;
}

template bool TypedArrayField<int>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<unsigned int>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<unsigned short>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<float>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<double>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<QString>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<DateTime>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<Color32>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<Vec3<double>>::StartUpdate(SchemaObject&, Update&) const;
template bool TypedArrayField<Vec3<float>>::StartUpdate(SchemaObject&, Update&) const;

} // namespace vorrel::kestan
