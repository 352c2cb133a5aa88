#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class NetworkLinkControlSchema;

/// What a server says to the network link that fetched a document.
class KESTAN_EXPORT NetworkLinkControl : public SchemaObject {
public:
  using ClassSchema = NetworkLinkControlSchema;
  static const Schema& GetClassSchema();
  ~NetworkLinkControl() override;

protected:
  NetworkLinkControl(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
