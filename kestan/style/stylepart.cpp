// What styles do when the library starts and stops.

#include "kestan/core/librarypart.h"
#include "kestan/style/icon.h"
#include "kestan/style/labelstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/localshapes.h"
#include "kestan/style/styleselector.h"

#include <memory>

namespace vorrel::kestan {

namespace {

class StylePart final : public LibraryPart {
public:
  void AddResourceLoaders(ResourceManager& manager) override {
    manager.AddLoader(std::make_unique<LocalShapes>());
  }
  void MakeSharedObjects() override {
    StyleSelector::Initialize();
    LabelStyle::Initialize();
    LineStyle::Initialize();
    Icon::Initialize();
  }
  void DropSharedObjects() override {
    Icon::Shutdown();
    LineStyle::Shutdown();
    LabelStyle::Shutdown();
    StyleSelector::Shutdown();
  }
};

StylePart s_style_part;

} // namespace

} // namespace vorrel::kestan
