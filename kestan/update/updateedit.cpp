#include "kestan/update/updateedit.h"

#include "kestan/core/fieldrest.h"
#include "kestan/update/editedobject.h"
#include "kestan/update/update.h"

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

bool UpdateEdit::CheckUpdateSecurity(const Field& field, const SchemaObject&,
                                     const Update& update) {
  return field.HasFlag(Field::kUpdateAnywhere) || update.CheckUrlSecurity();
}

bool UpdateEdit::IsFirstOf(const Field& field, SchemaObject& object, Update& update) {
  mmvector<const Field*>& arrays = update.RequireEdited(object).arrays;
  const bool isFirst = std::find(arrays.begin(), arrays.end(), &field) == arrays.end();
  if (isFirst)
    arrays.push_back(&field);
  return isFirst;
}

UpdateEdit::UpdateEdit(SchemaObject& object, Update& update, const Field& field)
    : edited_(update.RequireEdited(object)), field_(field), rest_(FieldRest::Copy(object, field)),
      formerOfObject_(edited_.latest) {
  edited_.latest = this;
  update.AddEdit(*this);
}

UpdateEdit::~UpdateEdit() {
  edited_.latest = formerOfObject_; // the latest one always goes first
  edited_.update.RemoveEdit(*this);
}

std::unique_ptr<const FieldRest> UpdateEdit::SwapRest() const {
  return std::exchange(rest_, FieldRest::Copy(edited_.object, field_));
}

SchemaObject& UpdateEdit::GetObject() const { return edited_.object; }

} // namespace vorrel::kestan
