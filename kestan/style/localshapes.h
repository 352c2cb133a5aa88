#pragma once

#include "kestan/host/resources.h"

namespace vorrel::kestan {

/// The shapes that every client has built in. A shape's text is its URL on the icon server, so that
/// a name, that URL and an old palette tile all lead to one text.
class LocalShapes final : public IResourceLoader {
public:
  ResourceRecord Find(const QString& name, const QString& type) const override;
};

} // namespace vorrel::kestan
