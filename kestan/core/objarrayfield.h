#pragma once

#include "kestan/core/childfield.h"
#include "kestan/host/arrayslice.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

namespace vorrel::kestan {

class ChildMove;

/// What holds for a member with an ordered array of children, whatever their class.
///
/// Each element has the array's object as owner, and its own position as array index. Entries may
/// be null.
class KESTAN_EXPORT ObjArrayFieldBase : public ChildField {
public:
  bool IsArray() const override { return true; }
  /// Grows the array with null entries, or lets those at its end go, without a notice of its own.
  void setCount(SchemaObject& object, unsigned count) const override;
  void TakeOut(SchemaObject& owner, int index) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
             bool useB) const override;
  QString toString(const SchemaObject& object, int index) const override;
  /// Replaces the element at `index`, growing the array with null entries; a null child erases.
  bool set(SchemaObject& owner, SchemaObject* child, int index) const override;
  /// Inserts, or moves a child that is already here. A negative index, or one beyond the end,
  /// appends.
  bool insert(SchemaObject& owner, SchemaObject* child, int index) const override;
  int FindObject(const SchemaObject& owner, const SchemaObject& child) const override;

  virtual bool remove(SchemaObject& owner, SchemaObject* child) const;
  virtual bool remove(SchemaObject& owner, int index) const;
  /// Removes the children that are here, with one notice; answers their number.
  virtual int RemoveMultiple(SchemaObject* owner,
                             const ArraySlice<RefPtr<SchemaObject>>& children) const;
  virtual bool add(SchemaObject& owner, SchemaObject* child) const;
  /// Appends the children that aren't here yet, with one notice; answers their number.
  virtual int AddMultiple(SchemaObject* owner,
                          const ArraySlice<RefPtr<SchemaObject>>& children) const;
  /// A child that comes ahead of the element at `index`, or behind the last one.
  struct Insertion {
    RefPtr<SchemaObject> child;
    int index;
  };
  /// Inserts the children that aren't here yet, with one notice; answers their number. The indices
  /// are those of the elements that are here already, and ascend.
  int InsertMultiple(SchemaObject* owner, const ArraySlice<Insertion>& insertions) const;
  /// Swaps the entries end for end, with one notice, however few they are.
  void reverse(SchemaObject& owner) const;
  /// Erases without a notice; answers the number of entries that went.
  int EraseMultiple(SchemaObject* owner, const ArraySlice<const int>& indices) const;

protected:
  ObjArrayFieldBase(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
                    unsigned flags, unsigned size, unsigned align);

  virtual void Grow(SchemaObject& owner, std::size_t count) const = 0;
  virtual void Store(SchemaObject& owner, int index, SchemaObject* child) const = 0;
  virtual void Append(SchemaObject& owner, SchemaObject* child) const = 0;
  /// Takes the entry at `from` to the place `to`; those between move one place towards `from`.
  virtual void Move(SchemaObject& owner, int from, int to) const = 0;
  /// Puts the entry at `order[i]` to the place `i`, for each.
  virtual void Arrange(SchemaObject& owner, const ArraySlice<const int>& order) const = 0;
  /// Drops the entries at `places`, which ascend; the others close up.
  virtual void Erase(SchemaObject& owner, const ArraySlice<const int>& places) const = 0;
  virtual void Reverse(SchemaObject& owner) const = 0;
  /// Tells the elements from `from` to before `end` their places.
  virtual void Renumber(const SchemaObject& owner, int from, int end) const = 0;

private:
  void Place(ChildMove& move, SchemaObject& owner, SchemaObject& child, int index) const;
  void Renumbered(const SchemaObject& owner, int from, int end) const;
};

/// A member `mmvector<RefPtr<T>>` that owns its objects.
template <class T> class KESTAN_EXPORT ObjArrayField : public ObjArrayFieldBase {
public:
  ObjArrayField(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
                unsigned flags = 0);

  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  int getCount(const SchemaObject& object) const override;
  SchemaObject* GetObject(const SchemaObject& object, int index) const override;

protected:
  void Grow(SchemaObject& owner, std::size_t count) const override;
  void Store(SchemaObject& owner, int index, SchemaObject* child) const override;
  void Append(SchemaObject& owner, SchemaObject* child) const override;
  void Move(SchemaObject& owner, int from, int to) const override;
  void Arrange(SchemaObject& owner, const ArraySlice<const int>& order) const override;
  void Erase(SchemaObject& owner, const ArraySlice<const int>& places) const override;
  void Reverse(SchemaObject& owner) const override;
  void Renumber(const SchemaObject& owner, int from, int end) const override;

private:
  mmvector<RefPtr<T>>& Array(const SchemaObject& object) const {
    return Member<mmvector<RefPtr<T>>>(object);
  }
};

} // namespace vorrel::kestan
