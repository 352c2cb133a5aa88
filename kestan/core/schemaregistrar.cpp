#include "kestan/core/schemaregistrar.h"

namespace vorrel::kestan {

SchemaRegistrar* SchemaRegistrar::s_head = nullptr;

SchemaRegistrar::SchemaRegistrar() : next_(s_head) {
  if (next_)
    next_->prev_ = this;
  s_head = this;
}

SchemaRegistrar::~SchemaRegistrar() {
  (prev_ ? prev_->next_ : s_head) = next_;
  if (next_)
    next_->prev_ = prev_;
}

void SchemaRegistrar::CreateSingletons() {
  for (SchemaRegistrar* registrar = s_head; registrar; registrar = registrar->next_)
    registrar->CreateSingleton();
}

void SchemaRegistrar::DeleteSingletons() {
  for (SchemaRegistrar* registrar = s_head; registrar; registrar = registrar->next_)
    registrar->DeleteSingleton();
}

} // namespace vorrel::kestan
