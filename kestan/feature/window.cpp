#include "kestan/feature/window.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/windowschema.h"

namespace vorrel::kestan {

template class SchemaT<Window, NewInstancePolicy, NewDerivedPolicy>;

WindowSchema::WindowSchema()
    : SchemaT("Window", &AbstractFeature::GetClassSchema(), Namespace::kKml) {}

const Schema& Window::GetClassSchema() { return WindowSchema::GetSingleton(); }

Window::Window(const KmlId& id, const QString& baseUrl) : Window(GetClassSchema(), id, baseUrl) {}

Window::Window(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {
  if (&schema == &GetClassSchema())
    NotifyPostCreate();
}

Window::~Window() { NotifyPreDelete(); }

void Window::Accept(GeometryVisitorConst*) const {}

void Window::Accept(GeometryVisitor*) {}

} // namespace vorrel::kestan
