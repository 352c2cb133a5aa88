#pragma once

#include "kestan/core/objectobserver.h"

namespace vorrel::kestan {

class Update;
class UpdateEdit;

/// An object with edits by one update, which go with it. One observer serves them all: each change
/// of an object is told to all its observers.
class EditedObject final : public MemoryObject, public ObjectObserver {
public:
  EditedObject(SchemaObject& edited, Update& owner)
      : ObjectObserver(edited), object(edited), update(owner) {}

  void OnFieldChanged(const FieldChangedEvent&) override {}
  void OnPreDelete(const PreDeleteEvent&) override;

  SchemaObject& object;
  Update& update;
  mmvector<const Field*> arrays; ///< The fields that have an edit of their array.
  UpdateEdit* latest = nullptr;  ///< Leads to the others; they go from this end.
};

} // namespace vorrel::kestan
