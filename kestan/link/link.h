#pragma once

#include "kestan/link/abstractlink.h"

namespace vorrel::kestan {

class LinkSchema;

/// The link of a network link, a model or an overlay.
class KESTAN_EXPORT Link final : public AbstractLink {
public:
  using ClassSchema = LinkSchema;
  static const Schema& GetClassSchema();
  Link(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Link() override;
};

} // namespace vorrel::kestan
