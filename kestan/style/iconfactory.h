#pragma once

#include "kestan/host/export.h"
#include "kestan/host/refptr.h"

#include <QString>

namespace vorrel {
class ResourceManager;
}

namespace vorrel::kestan {

class Icon;

/// Makes icons of named resources.
class KESTAN_EXPORT IconFactory {
public:
  /// The resources must outlive the factory.
  IconFactory(const ResourceManager& resources, Icon& defaultIcon);
  ~IconFactory();

  /// A new icon of the resource; the default icon when there's none of this name.
  RefPtr<Icon> GetIcon(const QString& name, const QString& ext) const;

private:
  const ResourceManager* resources_;
  RefPtr<Icon> defaultIcon_;
};

} // namespace vorrel::kestan
