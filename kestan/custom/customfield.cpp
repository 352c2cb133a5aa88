#include "kestan/custom/customfield.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/customfieldschema.h"
#include "kestan/custom/customschema.h"
#include "kestan/custom/customschemaschema.h"

#include <utility>

namespace vorrel::kestan {

template class ObjArrayField<CustomField>;

const Schema& CustomField::GetClassSchema() { return CustomFieldSchema::GetSingleton(); }

CustomField::CustomField(const Schema& kind, const KmlId& id, const QString& baseUrl)
    : SchemaObject(kind, id, baseUrl) {}

CustomField::CustomField(const Schema& kind, CustomSchema& owner, const QString& name, Type type)
    : CustomField(kind, KmlId(QString(), owner.GetUrl()), owner.GetBaseUrl()) {
  state_ = kHasType | kHasName;
  name_ = name;
  typeName_ = CustomFieldSchema::GetTypes().getString(type);
  const ConstructionGuard guard(*this);
  CustomSchemaSchema::GetSingleton().customFields.add(owner, this);
  NotifyPostCreate();
}

CustomField::~CustomField() { NotifyPreDelete(); }

void CustomField::SetDisplayName(const QString& text) {
  CustomFieldSchema::GetSingleton().displayName.CheckSet(*this, text);
}

CustomField::Type CustomField::GetType() const {
  int type = kNoType;
  CustomFieldSchema::GetTypes().GetEnum(typeName_, type);
  return static_cast<Type>(type);
}

double CustomField::GetValueAsDouble(Type type, const QString& text, bool* ok) {
  switch (type) {
  case kInt:
    return text.toInt(ok, 10);
  case kUint:
    return text.toUInt(ok, 10);
  case kShort:
    return text.toShort(ok, 10);
  case kUshort:
    return text.toUShort(ok, 10);
  case kFloat:
    return static_cast<double>(text.toFloat(ok));
  case kDouble:
  case kNoType:
    return text.toDouble(ok);
  default:
    *ok = false;
    return 0.0;
  }
}

void CustomField::NotifyFieldChanged(const Field& field) {
  const CustomFieldSchema& fields = CustomFieldSchema::GetSingleton();
  if (&field == &fields.type)
    state_ |= kHasType;
  else if (&field == &fields.name)
    state_ |= kHasName;
  if (&field != &fields.displayName) {
    DropField();
    CreateField();
  }
  SchemaObject::NotifyFieldChanged(field);
}

void CustomField::EnterPlace(SchemaObject& owner, int index) {
  SchemaObject::EnterPlace(owner, index);
  const bool isInSchema = owner.isOfType(CustomSchema::GetClassSchema());
  ownerSchema_ = isInSchema ? static_cast<CustomSchema*>(&owner) : nullptr;
  if (ownerSchema_)
    ownerSchema_->ForgetNames();
  CreateField();
}

void CustomField::LeavePlace(SchemaObject& owner) {
  DropField();
  ownerSchema_ = nullptr;
  SchemaObject::LeavePlace(owner);
}

bool CustomField::CreateField() {
  constexpr int kIsReady = kHasType | kHasName;
  if (field_ || !ownerSchema_ || (state_ & kIsReady) != kIsReady)
    return field_ != nullptr;
  if (ownerSchema_->HasInstances()) {
    ownerSchema_->SetLoose();
    return false;
  }
  field_ = CustomFieldSchema::MakeField(*this, *ownerSchema_);
  if (field_ || GetType() != kNoType)
    state_ |= kIsMade;
  return field_ != nullptr;
}

void CustomField::DropField() {
  state_ &= ~kIsMade;
  if (!ownerSchema_)
    return;
  ownerSchema_->ForgetNames();
  if (field_)
    ownerSchema_->TakeBack(std::move(field_));
}

} // namespace vorrel::kestan
