#pragma once

#include "kestan/host/export.h"
#include "kestan/host/memory.h"

#include <cstddef>

namespace vorrel::kestan {

class EditedObject;
class Field;
class SchemaObject;
class Update;

/// One change that an update makes to a field of one object: it knows the values before and after,
/// and moves the field between them.
///
/// Enters itself into its update, which owns it, and goes with the object at the latest. The
/// setters write through the field, so that everybody hears of the change; whoever hears may end
/// the edit.
/// Thread: the main one.
class KESTAN_EXPORT UpdateEdit : public MemoryObject {
public:
  /// Whether the update may change this field: some may be changed by anybody, all others only by
  /// updates that come from where the target does.
  static bool CheckUpdateSecurity(const Field& field, const SchemaObject& object,
                                  const Update& update);

  UpdateEdit(const UpdateEdit&) = delete;
  UpdateEdit& operator=(const UpdateEdit&) = delete;
  virtual ~UpdateEdit();

  SchemaObject& GetObject() const;
  virtual const Field& GetField() const = 0;

  /// `fraction` lies between 0, the value before, and 1, the one after.
  virtual void SetInterpolatedValue(float fraction) const = 0;
  virtual void SetFinalValue() const = 0;
  virtual void SetInitialValue() const = 0;

protected:
  /// The object isn't one that is dying.
  UpdateEdit(SchemaObject& object, Update& update);

private:
  friend class EditedObject;
  friend class Update;

  EditedObject& edited_;
  std::size_t place_ = 0;                ///< In the list of the update.
  UpdateEdit* formerOfObject_ = nullptr; ///< Of the edits of the object by the same update.
};

} // namespace vorrel::kestan
