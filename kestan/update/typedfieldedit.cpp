// The updating half of the field classes: what a text becomes that an update brings.

#include "kestan/update/typedfieldedit.h"

#include "kestan/core/enumfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/simplefield.h"
#include "kestan/update/interpolator.h"

namespace vorrel::kestan {

namespace {

template <class I, class T>
FromStringResult MakeEdit(const TypedField<T>& field, SchemaObject& object, T value,
                          Update& update) {
  if (!UpdateEdit::CheckUpdateSecurity(field, object, update))
    return FromStringResult::kSecurityViolation;
  if (!object.GetBit(kBitDeleting))
    new TypedFieldEdit<T, I>(field, object, std::move(value), update); // the update's from now on
  return FromStringResult::kOk;
}

} // namespace

template <class T>
FromStringResult SimpleField<T>::CreateEdit(SchemaObject& object, T value, Update& update) const {
  return MakeEdit<LinearInterpolator<T>, T>(*this, object, std::move(value), update);
}

FromStringResult EnumField::CreateEdit(SchemaObject& object, int value, Update& update) const {
  return MakeEdit<DiscreteInterpolator<int>, int>(*this, object, value, update);
}

// The classes themselves are instantiated beside the rest of their members.

template FromStringResult SimpleField<int>::CreateEdit(SchemaObject&, int, Update&) const;
template FromStringResult SimpleField<unsigned int>::CreateEdit(SchemaObject&, unsigned int,
                                                                Update&) const;
template FromStringResult SimpleField<unsigned short>::CreateEdit(SchemaObject&, unsigned short,
                                                                  Update&) const;
template FromStringResult SimpleField<long long>::CreateEdit(SchemaObject&, long long,
                                                             Update&) const;
template FromStringResult SimpleField<bool>::CreateEdit(SchemaObject&, bool, Update&) const;
template FromStringResult SimpleField<float>::CreateEdit(SchemaObject&, float, Update&) const;
template FromStringResult SimpleField<double>::CreateEdit(SchemaObject&, double, Update&) const;
template FromStringResult SimpleField<QString>::CreateEdit(SchemaObject&, QString, Update&) const;
template FromStringResult SimpleField<Color32>::CreateEdit(SchemaObject&, Color32, Update&) const;
template FromStringResult SimpleField<DateTime>::CreateEdit(SchemaObject&, DateTime, Update&) const;
template FromStringResult SimpleField<Vec3<double>>::CreateEdit(SchemaObject&, Vec3<double>,
                                                                Update&) const;
template FromStringResult SimpleField<LegacyScreenVec>::CreateEdit(SchemaObject&, LegacyScreenVec,
                                                                   Update&) const;

} // namespace vorrel::kestan
