#pragma once

#include "kestan/core/schemaobject.h"

#include <cstddef>
#include <vector>

namespace tool {

/// Goes over a tree of objects, parents before children, however deep it is. Children come in the
/// order of their class's fields; what objects refer to isn't part of the tree.
class Walk {
public:
  explicit Walk(const vorrel::kestan::SchemaObject& root) : pending_{{&root, 0}} {}

  /// The next object; null at the end.
  const vorrel::kestan::SchemaObject* Next();
  /// Of that object: how far it is from the root, and the number of its children.
  std::size_t GetDepth() const { return depth_; }
  std::size_t GetChildCount() const { return childCount_; }

private:
  struct Entry {
    const vorrel::kestan::SchemaObject* object;
    std::size_t depth;
  };

  std::vector<Entry> pending_;
  std::size_t depth_ = 0;
  std::size_t childCount_ = 0;
};

} // namespace tool
