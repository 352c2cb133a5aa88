#include "kestan/style/builtinstyles.h"

#include "kestan/style/balloonstyle.h"
#include "kestan/style/iconstackstyle.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"

namespace vorrel::kestan {

namespace {

constexpr float kHighlightIconScale = 1.2F;

template <class T> RefPtr<T> Make(const KmlId& id = KmlId()) {
  return RefPtr<T>(new (HeapManager::GetStaticHeap()) T(id, QString()));
}

template <class T> T* Shared(RefPtr<T> BuiltInStyles::*member) {
  return BuiltInStyles::Get() ? (BuiltInStyles::Get()->*member).get() : nullptr;
}

RefPtr<Style> MakeStyle(const char* id) {
  return Make<Style>(KmlId(QLatin1String(id), Style::GetRootStyleBase()));
}

} // namespace

std::unique_ptr<BuiltInStyles> BuiltInStyles::s_instance_;

BuiltInStyles::BuiltInStyles() {
  iconStyle = Make<IconStyle>();
  iconStackStyle = Make<IconStackStyle>();
  polyStyle = Make<PolyStyle>();
  listStyle = Make<ListStyle>();
  balloonStyle = Make<BalloonStyle>();
  defaultStyle = MakeStyle("default");
  fetchingStyle = MakeStyle("fetching");
  failedStyle = MakeStyle("failed");
  highlightStyle = MakeStyle("hl");
  highlightStyle->GetIconStyle()->SetScale(kHighlightIconScale);
  defaultStyleMap =
      StyleMap::create(KmlId(QStringLiteral("default"), StyleMap::GetRootStyleMapBase()), QString(),
                       *defaultStyle->Clone(), *highlightStyle->Clone(), nullptr);
}

BuiltInStyles::~BuiltInStyles() = default;

PolyStyle* PolyStyle::GetDefaultPolyStyle() { return Shared(&BuiltInStyles::polyStyle); }

IconStyle* IconStyle::GetDefaultIconStyle() { return Shared(&BuiltInStyles::iconStyle); }

IconStackStyle* IconStackStyle::GetDefaultIconStackStyle() {
  return Shared(&BuiltInStyles::iconStackStyle);
}

BalloonStyle* BalloonStyle::GetDefaultBalloonStyle() {
  return Shared(&BuiltInStyles::balloonStyle);
}

ListStyle* ListStyle::GetDefaultListStyle() { return Shared(&BuiltInStyles::listStyle); }

Style* Style::GetDefaultStyle() { return Shared(&BuiltInStyles::defaultStyle); }

Style* Style::GetFetchingStyle() { return Shared(&BuiltInStyles::fetchingStyle); }

Style* Style::GetFailedStyle() { return Shared(&BuiltInStyles::failedStyle); }

Style* Style::GetDefaultHighlightStyle() { return Shared(&BuiltInStyles::highlightStyle); }

StyleMap* StyleMap::GetDefaultStyleMap() { return Shared(&BuiltInStyles::defaultStyleMap); }

} // namespace vorrel::kestan
