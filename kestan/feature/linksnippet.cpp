#include "kestan/feature/linksnippet.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/snippetschema.h"

namespace vorrel::kestan {

template class SchemaT<LinkSnippet, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<LinkSnippet>;

LinkSnippetSchema::LinkSnippetSchema()
    : SchemaT("linkSnippet", &Snippet::GetClassSchema(), Namespace::kKml) {}

const Schema& LinkSnippet::GetClassSchema() { return LinkSnippetSchema::GetSingleton(); }

LinkSnippet::LinkSnippet(const KmlId& id, const QString& baseUrl)
    : Snippet(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

LinkSnippet::~LinkSnippet() { NotifyPreDelete(); }

} // namespace vorrel::kestan
