#pragma once

#include "kestan/core/typedfield.h"
#include "kestan/update/updateedit.h"

#include <utility>

namespace vorrel::kestan {

/// The edit of a member of type `T`. `I` is the interpolator: `LinearInterpolator<T>` or
/// `DiscreteInterpolator<T>`.
template <class T, class I> class TypedFieldEdit final : public UpdateEdit {
public:
  TypedFieldEdit(const TypedField<T>& field, SchemaObject& object, T value, Update& update)
      : UpdateEdit(object, update), field_(field), initial_(field.get(object)),
        final_(std::move(value)) {}

  const Field& GetField() const override { return field_; }
  void SetInterpolatedValue(float fraction) const override {
    field_.SetTypedObject(GetObject(), I::Interpolate(initial_, final_, fraction));
  }
  void SetFinalValue() const override { field_.SetTypedObject(GetObject(), final_); }
  void SetInitialValue() const override { field_.SetTypedObject(GetObject(), initial_); }

private:
  const TypedField<T>& field_;
  const T initial_;
  const T final_;
};

} // namespace vorrel::kestan
