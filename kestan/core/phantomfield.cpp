#include "kestan/core/phantomfield.h"

namespace vorrel::kestan {

PhantomField::PhantomField(Schema& schema, const QString& name)
    : Field(schema, name, 0, kHidden, 0, 0, 0) {}

unsigned PhantomField::getSize() const { return 0; }

unsigned PhantomField::GetAlign() const { return 0; }

void PhantomField::construct(SchemaObject&) const {}

void PhantomField::destruct(SchemaObject&) const {}

void PhantomField::WriteKml(const SchemaObject&, WriteState&) const {}

void PhantomField::copy(SchemaObject&, const SchemaObject&, bool) const {}

void PhantomField::clone(SchemaObject&, const SchemaObject&, bool) const {}

} // namespace vorrel::kestan
