#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class TarrowLinkSchema;

/// A link of the root element.
class KESTAN_EXPORT TarrowLink final : public SchemaObject {
public:
  using ClassSchema = TarrowLinkSchema;
  static const Schema& GetClassSchema();
  TarrowLink(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~TarrowLink() override;

  const QString& GetHref() const { return href_; }

private:
  friend class TarrowLinkSchema;

  QString href_;
};

} // namespace vorrel::kestan
