#include "tools/kestan/walk.h"

#include "kestan/core/schema.h"

#include <algorithm>
#include <iterator>

namespace tool {

using vorrel::kestan::Field;
using vorrel::kestan::SchemaObject;

const SchemaObject* Walk::Next() {
  if (pending_.empty()) {
    return nullptr;
  }
  const SchemaObject* object = pending_.back().object;
  depth_ = pending_.back().depth;
  pending_.pop_back();

  const auto others = static_cast<std::ptrdiff_t>(pending_.size());
  for (const Field* field : object->GetSchema().GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite)) {
      continue; // only for old documents, or owned elsewhere
    }
    const int count = field->IsArray() ? field->getCount(*object) : 1;
    for (int i = 0; i < count; ++i) {
      if (const SchemaObject* child = field->GetObject(*object, i)) {
        pending_.push_back({child, depth_ + 1});
      }
    }
  }
  childCount_ = pending_.size() - static_cast<std::size_t>(others);
  std::reverse(std::next(pending_.begin(), others), pending_.end());
  return object;
}

} // namespace tool
