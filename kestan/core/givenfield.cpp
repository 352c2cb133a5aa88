#include "kestan/core/givenfield.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/typedfield_impl.h"

namespace vorrel::kestan {

template <class T, class F>
GivenField<T, F>::GivenField(Schema& schema, const QString& name, unsigned offset,
                             unsigned maskOffset, unsigned flags)
    : F(schema, name, offset, Field::kElement, flags), maskOffset_(maskOffset) {}

template <class T, class F> bool GivenField<T, F>::IsGiven(const SchemaObject& object) const {
  return (Mask(object) & this->GetMaskBit()) != 0;
}

template <class T, class F>
bool GivenField<T, F>::SetGiven(SchemaObject& object, bool isGiven) const {
  unsigned& mask = Mask(object);
  mask = isGiven ? mask | this->GetMaskBit() : mask & ~this->GetMaskBit();
  object.DropKeptValues(*this);
  return true;
}

template <class T, class F> bool GivenField<T, F>::IsUndefined(const SchemaObject& object) const {
  if (F::IsUndefined(object))
    return true;
  const T value = this->get(object);
  return !IsGiven(object) && (object.GetBit(kBitWasRead) || this->Clamp(value) != value);
}

template <class T, class F>
void GivenField<T, F>::SetTypedObject(SchemaObject& object, T value) const {
  Mask(object) |= this->GetMaskBit();
  F::SetTypedObject(object, value);
}

template <class T, class F>
void GivenField<T, F>::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  if (IsGiven(src)) {
    F::copy(dst, src, deep);
    return;
  }
  // As it is, also beyond the bounds.
  this->template Member<T>(dst) = this->get(src);
  Mask(dst) &= ~this->GetMaskBit();
  this->NotifyFieldChanged(dst);
}

template <class T, class F>
FromStringResult GivenField<T, F>::fromString(SchemaObject& object, const AttributeList* attrs,
                                              const NamespaceList* namespaces, const QString& text,
                                              int index, Update* update) const {
  const DeletionDeferrer deferrer;
  const auto result = F::fromString(object, attrs, namespaces, text, index, update);
  const bool isBounded = this->HasFlag(Field::kHasMin) || this->HasFlag(Field::kHasMax);
  if (isBounded && !update && result == FromStringResult::kOk) {
    const T value = ValueFromString<T>(text);
    if (this->Clamp(value) != value)
      object.KeepText(*this, text);
  }
  return result;
}

template class GivenField<float>;
template class GivenField<double>;
template class GivenField<Vec3<double>, NormLLAField>;

} // namespace vorrel::kestan
