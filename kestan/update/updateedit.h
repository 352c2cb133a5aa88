#pragma once

#include "kestan/host/export.h"
#include "kestan/host/memory.h"

#include <cstddef>
#include <memory>

namespace vorrel::kestan {

class EditedObject;
class Field;
class FieldRest;
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

  /// True once for each field of an object, while the update has edits of it.
  static bool IsFirstOf(const Field& field, SchemaObject& object, Update& update);

  UpdateEdit(const UpdateEdit&) = delete;
  UpdateEdit& operator=(const UpdateEdit&) = delete;
  virtual ~UpdateEdit();

  SchemaObject& GetObject() const;
  const Field& GetField() const { return field_; }

  /// `fraction` lies between 0, the value before, and 1, the one after.
  virtual void SetInterpolatedValue(float fraction) const = 0;
  virtual void SetFinalValue() const = 0;
  virtual void SetInitialValue() const = 0;

protected:
  /// The object isn't one that is dying.
  UpdateEdit(SchemaObject& object, Update& update, const Field& field);

  /// What goes with the value before, or null.
  const FieldRest* GetRest() const { return rest_.get(); }
  /// The same, and keeps what goes with the present value instead.
  std::unique_ptr<const FieldRest> SwapRest() const;

private:
  friend class EditedObject;
  friend class Update;

  EditedObject& edited_;
  const Field& field_;
  mutable std::unique_ptr<const FieldRest> rest_;
  std::size_t place_ = 0;                ///< In the list of the update.
  UpdateEdit* formerOfObject_ = nullptr; ///< Of the edits of the object by the same update.
};

} // namespace vorrel::kestan
