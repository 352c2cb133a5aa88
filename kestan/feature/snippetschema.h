#pragma once

#include "kestan/core/cdatafield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/linksnippet.h"
#include "kestan/feature/snippet.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SnippetSchema final
    : public SchemaT<Snippet, NewInstancePolicy, NoDerivedPolicy> {
public:
  SnippetSchema();

  SimpleField<int> maxLines{*this, "maxLines", OffsetOf(&Snippet::maxLines_), Field::kAttribute};
  CdataField text{*this, QString(), OffsetOf(&Snippet::text_), Field::kElement};
};

extern template class SchemaT<Snippet, NewInstancePolicy, NoDerivedPolicy>;

class KESTAN_EXPORT LinkSnippetSchema final
    : public SchemaT<LinkSnippet, NewInstancePolicy, NoDerivedPolicy> {
public:
  LinkSnippetSchema();
};

extern template class SchemaT<LinkSnippet, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
