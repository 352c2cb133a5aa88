#pragma once

#include "kestan/core/fieldrest.h"
#include "kestan/core/typedfield.h"
#include "kestan/update/updateedit.h"

#include <utility>

namespace vorrel::kestan {

/// The edit of a member of type `T`. `I` is the interpolator: `LinearInterpolator<T>` or
/// `DiscreteInterpolator<T>`.
template <class T, class I> class TypedFieldEdit final : public UpdateEdit {
public:
  TypedFieldEdit(const TypedField<T>& field, SchemaObject& object, T value, Update& update)
      : UpdateEdit(object, update, field), initial_(field.get(object)), final_(std::move(value)) {}

  void SetInterpolatedValue(float fraction) const override {
    Set(I::Interpolate(initial_, final_, fraction));
  }
  void SetFinalValue() const override { Set(final_); }
  void SetInitialValue() const override {
    const FieldRestoration restoration(GetObject(), GetField(), GetRest());
    GetTypedField().SetTypedObject(GetObject(), initial_);
  }

private:
  const TypedField<T>& GetTypedField() const {
    return static_cast<const TypedField<T>&>(GetField());
  }
  void Set(T value) const {
    if (GetTypedField().SetGiven(GetObject(), true))
      GetTypedField().SetTypedObject(GetObject(), std::move(value));
  }

  const T initial_;
  const T final_;
};

} // namespace vorrel::kestan
