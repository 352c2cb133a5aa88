#include "kestan/style/substyle.h"

#include "kestan/core/bitguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"

namespace vorrel::kestan {

SubStyle::SubStyle(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

void SubStyle::SetSpecified(unsigned mask) {
  ObjectObserver::SetSpecified(*this, specified_, mask);
}

bool SubStyle::ClearField(const Field& field) {
  if (!isOfType(field.GetSchema()))
    return false;
  if ((GetFieldsSpecified() & field.GetMaskBit()) == 0)
    return true;
  {
    // Whoever hears of it finds the field without a value.
    const NotificationDisabler disabler;
    const BitGuard guard(this, kBitNoFieldNotify, true);
    field.copy(*this, *GetSchema().CreateInstance(KmlId(), QString(), nullptr), true);
  }
  specified_ &= ~field.GetMaskBit();
  SchemaObject::NotifyFieldChanged(field);
  return true;
}

void SubStyle::merge(const SchemaObject& a, const SchemaObject& b) {
  const DeletionDeferrer deferrer;
  const unsigned specified = a.GetFieldsSpecified() | b.GetFieldsSpecified();
  SchemaObject::merge(a, b);
  specified_ = specified;
}

void SubStyle::WriteKml(WriteState& state) const {
  WriteKmlFieldsSpecified(state, GetFieldsSpecified());
}

void SubStyle::NotifyFieldChanged(const Field& field) {
  specified_ |= field.GetMaskBit();
  SchemaObject::NotifyFieldChanged(field);
}

void SubStyle::CopyNonFieldStuff(const SchemaObject& src) {
  specified_ = src.GetFieldsSpecified(); // copying the fields has marked them all
  SchemaObject::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
