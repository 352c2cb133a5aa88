#pragma once

#include "kestan/core/field.h"

namespace vorrel::kestan {

/// A member of type `T`, with an optional default and bounds.
///
/// Default and bounds are set by the schema's constructor; each call sets the flag with the value.
template <class T> class KESTAN_EXPORT TypedField : public Field {
public:
  TypedField& SetDefault(const T& value);
  TypedField& SetMin(const T& value);
  TypedField& SetMax(const T& value);
  TypedField& SetBounds(const T& min, const T& max) { return SetMin(min).SetMax(max); }

  const T& GetDefault() const { return defaultValue_; }
  const T& GetMin() const { return minValue_; }
  const T& GetMax() const { return maxValue_; }

  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  bool equals(const SchemaObject& a, const SchemaObject& b) const override;
  int compare(const SchemaObject& a, const SchemaObject& b) const override;

  virtual T get(const SchemaObject& object) const;
  /// Clamps the value to the bounds, stores it and notifies, also when it hasn't changed.
  virtual void SetTypedObject(SchemaObject& object, T value) const;

  /// The setter of classes with a mask of specified fields. An equal value sends no notice, but
  /// counts as given all the same, and what is derived from the object follows.
  void CheckSet(SchemaObject& object, const T& value, unsigned& specified) const;
  /// The setter of classes without a mask: an equal value does nothing.
  void CheckSet(SchemaObject& object, const T& value) const;

protected:
  /// `size` and `align` of the member, where it's another one than a `T`.
  TypedField(Schema& schema, const QString& name, unsigned offset, Type type, unsigned flags,
             unsigned size = sizeof(T), unsigned align = alignof(T));

  T Clamp(T value) const;

  T defaultValue_{};
  T minValue_{};
  T maxValue_{};
};

} // namespace vorrel::kestan
