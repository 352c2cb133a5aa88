#include "kestan/core/fieldrest.h"

namespace vorrel::kestan {

std::unique_ptr<const FieldRest> FieldRest::Copy(const SchemaObject& object, const Field& field) {
  const bool isGiven = field.IsGiven(object);
  if (isGiven && !object.HasKeptValue(field))
    return nullptr;
  auto rest = std::make_unique<FieldRest>();
  rest->isGiven_ = isGiven;
  rest->kept_ = object.GetKeptFields(field);
  return rest;
}

FieldRestoration::FieldRestoration(SchemaObject& object, const Field& field, const FieldRest* rest)
    : object_(object), field_(field),
      rest_(rest ? std::optional<FieldRest>(*rest) : std::optional<FieldRest>()) {
  if (rest_)
    silence_.emplace(&object, kBitNoFieldNotify, true);
}

FieldRestoration::~FieldRestoration() {
  silence_.reset();
  if (!rest_ || object_.GetBit(kBitDeleting))
    return;
  if (!rest_->isGiven_)
    field_.SetGiven(object_, false);
  object_.PutKeptFields(field_, rest_->kept_);
  object_.SchemaObject::NotifyFieldChanged(field_); // its class has done what it does already
}

} // namespace vorrel::kestan
