#pragma once

#include "kestan/feature/abstractfolder.h"

namespace vorrel::kestan {

class NetworkLinkSchema;

/// A folder whose children come from a URL.
class KESTAN_EXPORT NetworkLink : public AbstractFolder {
public:
  class Url;

  using ClassSchema = NetworkLinkSchema;
  static const Schema& GetClassSchema();
  ~NetworkLink() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  NetworkLink(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
