#pragma once

#include "kestan/host/memory.h"

#include <QSet>

#include <algorithm>

namespace vorrel::kestan {

class SchemaObject;

/// Objects in the order in which they came, each once. So an output doesn't depend on addresses.
class ObjectSet {
public:
  /// True for an object that wasn't there yet.
  bool insert(const SchemaObject& object) {
    if (contains(object))
      return false;
    members_.insert(&object);
    objects_.push_back(&object);
    return true;
  }
  /// Keeps the order of the rest. Linear; for the few that turn out to be written elsewhere.
  void erase(const SchemaObject& object) {
    if (members_.remove(&object))
      objects_.erase(std::find(objects_.begin(), objects_.end(), &object));
  }
  bool contains(const SchemaObject& object) const { return members_.contains(&object); }
  bool empty() const { return objects_.empty(); }
  mmvector<const SchemaObject*>::const_iterator begin() const { return objects_.begin(); }
  mmvector<const SchemaObject*>::const_iterator end() const { return objects_.end(); }

private:
  mmvector<const SchemaObject*> objects_;
  QSet<const SchemaObject*> members_;
};

} // namespace vorrel::kestan
