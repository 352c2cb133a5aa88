#pragma once

#include "kestan/core/field.h"
#include "kestan/host/memory.h"

namespace vorrel::kestan {

/// A member with many plain values, an `mmvector<E>`.
template <class E> class KESTAN_EXPORT TypedArrayField : public Field {
public:
  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  bool IsArray() const override { return true; }
  int getCount(const SchemaObject& object) const override;
  void setCount(SchemaObject& object, unsigned count) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
             bool useB) const override;
  QString toString(const SchemaObject& object, int index) const override;

  /// The values, and which of them are undefined where that is noted.
  struct State {
    mmvector<E> values;
    mmvector<bool> undefined;
  };
  virtual State GetState(const SchemaObject& object) const;
  /// Swaps the values for others, with one notice.
  virtual void Exchange(SchemaObject& object, State& others) const;

  const mmvector<E>& get(const SchemaObject& object) const { return Array(object); }

protected:
  using Field::Field;
  TypedArrayField(Schema& schema, const QString& name, unsigned offset, Type type, unsigned flags);

  /// Has the update remember the values, which a text that it brings is about to change. False when
  /// it isn't allowed to.
  bool StartUpdate(SchemaObject& object, Update& update) const;

  mmvector<E>& Array(const SchemaObject& object) const { return Member<mmvector<E>>(object); }
};

} // namespace vorrel::kestan
