#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"
#include "kestan/read/unknowncontent.h"

#include <QString>

#include <cstdint>

namespace vorrel::kestan {

/// One object of which the element is open.
struct TagInfo {
  TagInfo(RefPtr<SchemaObject> objectMade, SchemaObject* parentObject, const Field* parentField,
          int place, UnknownContent unknownContent)
      : object(std::move(objectMade)), parent(parentObject), parent_field(parentField),
        index(place), content(unknownContent) {
    if (!IsExisting())
      object->BeginReading();
  }
  TagInfo(TagInfo&&) = default;
  TagInfo& operator=(TagInfo&&) = delete;
  ~TagInfo() {
    if (object && !IsExisting())
      object->EndReading();
  }

  /// True for an object that was there before, and is being changed.
  bool IsExisting() const { return content == UnknownContent::kLeftOut; }

  /// Whether the document has given the field of `object` already.
  bool IsGiven(const Field& place) const {
    const unsigned number = place.GetIndex();
    return number < 64 ? (given >> number & 1U) != 0
                       : number - 64 < givenBeyond.size() && givenBeyond[number - 64];
  }
  void SetGiven(const Field& place) {
    const unsigned number = place.GetIndex();
    if (number < 64)
      given |= std::uint64_t(1) << number;
    else
      SetGivenBeyond(number - 64);
  }

  RefPtr<SchemaObject> object;
  SchemaObject* parent; ///< Receives the object at its end, or null. Lies below on the stack.
  const Field* field = nullptr; ///< The field element now open inside the object.
  const Field* parent_field;    ///< The field of `parent` that receives the object.
  QString unknown_text;         ///< Raw XML of unknown children.
  QString text;                 ///< The object's own text in front of an unknown child.
  int index;                    ///< Place in the field of the parent; -1 appends.
  UnknownContent content;
  std::uint64_t given = 0;    ///< One bit for each of the first fields that the document has given.
  mmvector<bool> givenBeyond; ///< The same for the fields from 64 on.
  QString formerAttrs;        ///< Unknown attributes of the former element for the field now open.
  bool hasChild = false;      ///< The element for the field now open has given it a child.

private:
  Q_NEVER_INLINE void SetGivenBeyond(unsigned number) {
    if (number >= givenBeyond.size())
      givenBeyond.resize(number + 1);
    givenBeyond[number] = true;
  }
};

} // namespace vorrel::kestan
