#pragma once

#include "kestan/core/normllafield.h"
#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// A value without a default, of which the object remembers whether it was given: one that came
/// from a document is written with what that said and no more. One that a client made says all.
///
/// The object has a mask, 0 at first, with the bit `GetMaskBit()` for each such field. `F` is the
/// field class for values `T`.
template <class T, class F = SimpleField<T>> class KESTAN_EXPORT GivenField final : public F {
public:
  GivenField(Schema& schema, const QString& name, unsigned offset, unsigned maskOffset,
             unsigned flags = 0);

  bool IsGiven(const SchemaObject& object) const override;
  /// Classes call it that write the member themselves: what a document gave has been replaced.
  bool SetGiven(SchemaObject& object, bool isGiven) const override;

  /// True also for what nobody gave and no text gives back, since it lies beyond the bounds.
  bool IsUndefined(const SchemaObject& object) const override;
  void SetTypedObject(SchemaObject& object, T value) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  /// A number beyond the bounds is limited, but comes back as the document had it.
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;

private:
  unsigned& Mask(const SchemaObject& object) const {
    return this->template Member<unsigned>(object, maskOffset_);
  }

  unsigned maskOffset_;
};

extern template class GivenField<float>;
extern template class GivenField<double>;
extern template class GivenField<Vec3<double>, NormLLAField>;

} // namespace vorrel::kestan
