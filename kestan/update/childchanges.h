#pragma once

#include "kestan/host/memory.h"
#include "kestan/host/pointerset.h"
#include "kestan/host/refptr.h"
#include "kestan/update/childorder.h"

#include <functional>
#include <unordered_map>
#include <utility>

namespace vorrel::kestan {

class AbstractFeature;
class ObjArrayFieldBase;

/// Children that an update brings into arrays, and takes out of them. They come and go together at
/// its end, since each that does so alone makes all behind it move. Until then everything is
/// answered as if they had come and gone already.
///
/// Places are those in the array as the update finds it. Where somebody else changes it meanwhile,
/// children come as near to them as they can.
class ChildChanges {
public:
  ChildChanges() = default;
  ChildChanges(const ChildChanges&) = delete;
  ChildChanges& operator=(const ChildChanges&) = delete;
  /// Does what is still to be done.
  ~ChildChanges() { Finish(); }

  /// Has a child enter an array, at `place` unless that is negative or beyond the end. It leaves
  /// where it stands. False when it's refused.
  bool Insert(SchemaObject& owner, const Field& field, SchemaObject& child, int place);
  /// Has a feature leave its folder. It's removed with all that stands in it.
  void Remove(AbstractFeature& feature);
  /// Has another object stand in the place of a feature; false for one outside of a folder.
  bool Replace(AbstractFeature& feature, SchemaObject& other);

  /// True for an object that was removed.
  bool IsRemoved(const SchemaObject& object) const;
  /// The place of a feature in its folder; -1 for one outside of a folder.
  int FindPlace(const AbstractFeature& feature) const;

  /// Brings about all that was asked for. Everybody is told.
  void Finish();

private:
  using Key = std::pair<const SchemaObject*, const Field*>;
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      return std::hash<const void*>()(key.first) * 31 + std::hash<const void*>()(key.second);
    }
  };
  struct Array {
    Array(SchemaObject& object, const ObjArrayFieldBase& arrayField);

    const RefPtr<SchemaObject> owner;
    const ObjArrayFieldBase& field;
    ChildOrder order;
    mmvector<RefPtr<SchemaObject>> leaving;
  };

  Array* Find(const SchemaObject& owner, const Field& field) const;
  Array& Require(SchemaObject& owner, const ObjArrayFieldBase& field);
  /// The array that a child is to come into; null for one that has come, or comes nowhere.
  Array* FindTarget(const SchemaObject& child) const;
  /// Where the child will be.
  SchemaObject* GetHome(const SchemaObject& child) const;
  /// Calls `visit` for an object and whatever it will stand in, until that answers true; then it's
  /// true. Ends also where somebody else has closed a ring meanwhile.
  template <class Visit> bool AnyUpwards(const SchemaObject& object, Visit visit) const;
  /// Has a child leave the array in which it stands, or is to stand; false when it's in none.
  bool Leave(SchemaObject& child);
  static void Take(Array& array);

  mmvector<std::unique_ptr<Array>> arrays_; ///< In the order in which they changed first.
  std::unordered_map<Key, Array*, KeyHash> places_;
  std::unordered_map<const SchemaObject*, Array*> coming_;
  PointerSet<const SchemaObject> removed_;
  mmvector<RefPtr<SchemaObject>> kept_; ///< What was removed.
};

} // namespace vorrel::kestan
