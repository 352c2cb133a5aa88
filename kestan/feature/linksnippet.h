#pragma once

#include "kestan/feature/snippet.h"

namespace vorrel::kestan {

class LinkSnippetSchema;

/// The snippet that a server sends for the network link that fetched it.
class KESTAN_EXPORT LinkSnippet final : public Snippet {
public:
  using ClassSchema = LinkSnippetSchema;
  static const Schema& GetClassSchema();
  LinkSnippet(const KmlId& id, const QString& baseUrl);
  ~LinkSnippet() override;
};

} // namespace vorrel::kestan
