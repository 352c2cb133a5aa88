#include "kestan/style/iconfactory.h"

#include "kestan/host/resources.h"
#include "kestan/style/icon.h"

namespace vorrel::kestan {

IconFactory::IconFactory(const ResourceManager& resources, Icon& defaultIcon)
    : resources_(&resources), defaultIcon_(&defaultIcon) {}

IconFactory::~IconFactory() = default;

RefPtr<Icon> IconFactory::GetIcon(const QString& name, const QString& ext) const {
  const QString text = resources_->Find(name, ext).text;
  return text.isEmpty() ? defaultIcon_ : Icon::create(text, false);
}

} // namespace vorrel::kestan
