#pragma once

#include "kestan/host/memory.h"

#include <QHash>

#include <cstddef>

namespace vorrel::kestan {

class SchemaObject;

/// Objects in the order in which they came, each once. So an output doesn't depend on addresses.
class ObjectSet {
public:
  /// True for an object that wasn't there yet.
  bool insert(const SchemaObject& object) {
    if (contains(object))
      return false;
    places_.insert(&object, objects_.size());
    objects_.push_back(&object);
    return true;
  }
  /// Keeps the order of the rest.
  void erase(const SchemaObject& object) {
    const auto place = places_.find(&object);
    if (place == places_.end())
      return;
    objects_[*place] = nullptr;
    places_.erase(place);
  }
  bool contains(const SchemaObject& object) const { return places_.contains(&object); }
  bool empty() const { return places_.isEmpty(); }
  /// Calls `op` with each object.
  template <class Op> void ForEach(Op op) const {
    for (const SchemaObject* object : objects_) {
      if (object)
        op(*object);
    }
  }

private:
  mmvector<const SchemaObject*> objects_; ///< Null where one was erased.
  QHash<const SchemaObject*, std::size_t> places_;
};

} // namespace vorrel::kestan
