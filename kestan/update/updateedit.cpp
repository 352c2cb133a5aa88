#include "kestan/update/updateedit.h"

#include "kestan/core/field.h"
#include "kestan/update/editedobject.h"
#include "kestan/update/update.h"

namespace vorrel::kestan {

bool UpdateEdit::CheckUpdateSecurity(const Field& field, const SchemaObject&,
                                     const Update& update) {
  return field.HasFlag(Field::kUpdateAnywhere) || update.CheckUrlSecurity();
}

UpdateEdit::UpdateEdit(SchemaObject& object, Update& update)
    : edited_(update.RequireEdited(object)), formerOfObject_(edited_.latest) {
  edited_.latest = this;
  update.AddEdit(*this);
}

UpdateEdit::~UpdateEdit() {
  edited_.latest = formerOfObject_; // the latest one always goes first
  edited_.update.RemoveEdit(*this);
}

SchemaObject& UpdateEdit::GetObject() const { return edited_.object; }

} // namespace vorrel::kestan
