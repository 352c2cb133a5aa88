#pragma once

#include "kestan/feature/abstractfolder.h"

namespace vorrel::kestan {

class GlobeSchema;

/// The root of all that a client shows. Visitors see it as a plain folder.
class KESTAN_EXPORT Globe final : public AbstractFolder {
public:
  using ClassSchema = GlobeSchema;
  static const Schema& GetClassSchema();
  Globe(const KmlId& id, const QString& baseUrl);
  ~Globe() override;
};

} // namespace vorrel::kestan
