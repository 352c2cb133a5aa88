// Styles that are made from their own id.

#include "kestan/host/url.h"
#include "kestan/style/icon.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/styleselector.h"

#include <QRegularExpression>

namespace vorrel::kestan {

namespace {

/// A tile by its number, or an image by its URL.
RefPtr<Icon> MakeIcon(const QString& text) {
  bool isNumber = false;
  const unsigned number = text.toUInt(&isNumber, 16);
  return isNumber ? Icon::CreateFromTexId(static_cast<unsigned short>(number & 0xFFFFU))
                  : Icon::create(text);
}

const QRegularExpression& TwoIcons() {
  static const QRegularExpression pattern(
      QStringLiteral("^([^+]+)\\+nicon=([^+]+)\\+hicon=([^$]+)$"));
  return pattern;
}

} // namespace

bool StyleSelector::IsBuiltInUrl(const QString& url) {
  return !url.isEmpty() && GGetUrlType(url) == kUrlRoot;
}

bool StyleSelector::IsMadeFrom(const QString& url) const {
  if (!IsBuiltInUrl(url))
    return false;
  // A style with another icon bears that in its id, which only the form with two can be read from.
  const bool hasOtherIcon = GetId().contains(QLatin1String("icon=")) && url.endsWith(GetId());
  return !hasOtherIcon || TwoIcons().match(GetId()).hasMatch();
}

QString StyleSelector::MakeStyleUrl(const QString& baseUrl, const QString& present) const {
  const bool local = GetUrl() == baseUrl;
  if (local && present.startsWith(QLatin1Char('#')) && QStringView(present).mid(1) == GetId())
    return present;
  const QString document = local ? QString() : GetUrl();
  return local || !GetId().isEmpty() ? document + QLatin1Char('#') + GetId() : document;
}

RefPtr<StyleSelector> StyleSelector::resolve(const KmlId& id) {
  if (StyleSelector* present = find(id))
    return RefPtr<StyleSelector>(present);
  static const QRegularExpression oneIcon(QStringLiteral("^(?:([^?]*)\\?)?iconId=([^$]+)$"));

  QRegularExpressionMatch match = oneIcon.match(id.id);
  if (match.hasMatch()) {
    const KmlId base(match.captured(1), Style::GetRootStyleBase());
    bool isNumber = false;
    const unsigned number = match.captured(2).toUInt(&isNumber, 0);
    return isNumber ? resolve(base, static_cast<unsigned short>(number & 0xFFFFU), QString())
                    : resolve(base, 0, match.captured(2));
  }
  match = TwoIcons().match(id.id);
  if (match.hasMatch()) {
    return resolve(KmlId(match.captured(1), Style::GetRootStyleBase()),
                   *MakeIcon(match.captured(2)), *MakeIcon(match.captured(3)));
  }
  return Style::GetDefaultStyle()->Clone();
}

RefPtr<StyleSelector> StyleSelector::resolve(const KmlId& id, unsigned short oldIconId,
                                             const QString& name) {
  RefPtr<Icon> normal;
  RefPtr<Icon> highlight;
  if (oldIconId != 0) {
    normal = Icon::CreateFromTexId(Icon::OldToNew(Icon::GetOldNormal(oldIconId)));
    highlight = Icon::CreateFromTexId(Icon::OldToNew(Icon::GetOldHighlight(oldIconId)));
  } else if (!name.isEmpty()) {
    // The name has its query already. The tile for the highlight lies one row further down.
    normal = Icon::create(name + QLatin1String("&w=32&h=32"));
    highlight = Icon::create(name + QLatin1String("&y=32&w=32&h=32"));
  } else {
    normal = Icon::CreateEmptyIcon();
    highlight = Icon::CreateEmptyIcon();
  }
  return resolve(id, *normal, *highlight);
}

RefPtr<StyleSelector> StyleSelector::resolve(const KmlId& id, Icon& normal, Icon& highlight) {
  RefPtr<Style> base(Style::find(id));
  if (!base)
    base = Style::GetDefaultStyle()->Clone();
  if (normal == highlight)
    return base->CloneIcon(normal);
  return StyleMap::create(*base, normal, highlight);
}

} // namespace vorrel::kestan
