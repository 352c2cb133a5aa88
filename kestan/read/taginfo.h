#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"

#include <QString>

#include <cstdint>

namespace vorrel::kestan {

/// One object of which the element is open.
struct TagInfo {
  TagInfo(RefPtr<SchemaObject> objectMade, SchemaObject* parentObject, const Field* parentField,
          int place)
      : object(std::move(objectMade)), parent(parentObject), parent_field(parentField),
        index(place) {
    object->BeginReading();
  }
  TagInfo(TagInfo&&) = default;
  TagInfo& operator=(TagInfo&&) = delete;
  ~TagInfo() {
    if (object)
      object->EndReading();
  }

  /// The mark of a field of `object` in `filled`.
  static std::uint64_t GetMark(const Field& field) {
    return std::uint64_t(1) << (field.GetIndex() % 64);
  }

  RefPtr<SchemaObject> object;
  SchemaObject* parent; ///< Receives the object at its end, or null. Lies below on the stack.
  const Field* field = nullptr; ///< The field element now open inside the object.
  const Field* parent_field;    ///< The field of `parent` that receives the object.
  QString unknown_text;         ///< Raw XML of unknown children.
  QString text;                 ///< The object's own text in front of an unknown child.
  int index;                    ///< Place in the field of the parent; -1 appends.
  std::uint64_t filled = 0;     ///< Marks of the fields that have received a child.
};

} // namespace vorrel::kestan
