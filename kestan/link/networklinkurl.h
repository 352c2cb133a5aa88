#pragma once

#include "kestan/link/abstractlink.h"
#include "kestan/link/networklink.h"

namespace vorrel::kestan {

class NetworkLinkUrlSchema;

/// The older form of a network link's `Link`, which may have its reference as its own text.
class KESTAN_EXPORT NetworkLink::Url final : public AbstractLink {
public:
  using ClassSchema = NetworkLinkUrlSchema;
  static const Schema& GetClassSchema();
  Url(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Url() override;

  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;
};

} // namespace vorrel::kestan
