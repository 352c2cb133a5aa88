#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class TarrowLinkSchema;

/// A link of the root element.
class KESTAN_EXPORT TarrowLink : public SchemaObject {
public:
  using ClassSchema = TarrowLinkSchema;
  static const Schema& GetClassSchema();
  ~TarrowLink() override;

protected:
  TarrowLink(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
