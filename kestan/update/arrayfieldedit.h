#pragma once

#include "kestan/core/typedarrayfield.h"
#include "kestan/update/updateedit.h"

namespace vorrel::kestan {

/// Brings back an array of values. An update stores them at once: the edit remembers those before,
/// and while they're back, those that came.
template <class E> class ArrayFieldEdit final : public UpdateEdit {
public:
  ArrayFieldEdit(const TypedArrayField<E>& field, SchemaObject& object, Update& update);

  void SetInterpolatedValue(float) const override { SetFinalValue(); }
  void SetFinalValue() const override {
    if (isBack_)
      Exchange();
  }
  void SetInitialValue() const override {
    if (!isBack_)
      Exchange();
  }

private:
  void Exchange() const;

  mutable typename TypedArrayField<E>::State others_;
  mutable bool isBack_ = false;
};

} // namespace vorrel::kestan
