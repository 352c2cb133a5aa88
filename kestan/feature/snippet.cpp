#include "kestan/feature/snippet.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/snippetschema.h"

namespace vorrel::kestan {

template class SchemaT<Snippet, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Snippet>;

SnippetSchema::SnippetSchema() : SchemaT("Snippet", nullptr, Namespace::kKml) {
  maxLines.SetDefault(2);
}

const Schema& Snippet::GetClassSchema() { return SnippetSchema::GetSingleton(); }

Snippet::Snippet(const KmlId& id, const QString& baseUrl) : Snippet(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Snippet::Snippet(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

Snippet::~Snippet() { NotifyPreDelete(); }

void Snippet::SetText(const QString& text) {
  SnippetSchema::GetSingleton().text.CheckSet(*this, text);
}

void Snippet::SetMaxLines(int lines) {
  SnippetSchema::GetSingleton().maxLines.CheckSet(*this, lines);
}

FromStringResult Snippet::fromString(const QString& text) {
  SetText(text);
  return FromStringResult::kOk;
}

const Field* Snippet::GetTextField() const { return &SnippetSchema::GetSingleton().text; }

} // namespace vorrel::kestan
