#include "tools/kestan/origin.h"

#include "kestan/feature/abstractfeature.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemappair.h"
#include "tools/kestan/output.h"

using namespace vorrel::kestan;

namespace tool {

namespace {

/// The name that a document has for a selector: a built-in one goes by the text that asked for it.
QString GetUrl(const StyleSelector& selector, const QString& written, const QString& baseUrl) {
  return StyleSelector::IsBuiltInUrl(written) ? written : selector.MakeStyleUrl(baseUrl, written);
}

QString NameStandIn(const Style* style) {
  return style == Style::GetFailedStyle()     ? QStringLiteral("failed")
         : style == Style::GetFetchingStyle() ? QStringLiteral("fetching")
                                              : QStringLiteral("default");
}

Origin GetGiven(const AbstractFeature& feature, const StyleSource& source) {
  const QString& baseUrl = feature.GetBaseUrl();
  const bool isInline = source.selector == feature.GetInlineStyleSelector();
  const QString first =
      isInline ? QString() : GetUrl(*source.selector, feature.GetStyleUrl(), baseUrl);
  if (!source.pair) {
    return {isInline ? QStringLiteral("inline") : QStringLiteral("shared"), QString(), first};
  }
  const bool isOwn = source.style == source.pair->GetInlineStyleSelector();
  return {QStringLiteral("styleMap"), first,
          isOwn ? QString() : GetUrl(*source.style, source.pair->GetStyleUrl(), baseUrl)};
}

Origin GetStandIn(const AbstractFeature& feature, const StyleSource& source) {
  Origin origin;
  origin.from =
      source.kind == StyleSource::kLoop ? QStringLiteral("loop") : NameStandIn(source.style);
  if (source.selector && source.selector != feature.GetInlineStyleSelector()) {
    origin.map = GetUrl(*source.selector, feature.GetStyleUrl(), feature.GetBaseUrl());
  }
  if (origin.from == QLatin1String("failed") || origin.from == QLatin1String("fetching")) {
    origin.style = source.pair ? source.pair->GetStyleUrl() : feature.GetStyleUrl();
  }
  return origin;
}

} // namespace

std::vector<Origin> GetOrigins(const AbstractFeature& feature, const StyleSources& sources) {
  std::vector<Origin> origins;
  for (const StyleSource& source : sources) {
    const bool isGiven = source.kind == StyleSource::kGiven;
    origins.push_back(isGiven ? GetGiven(feature, source) : GetStandIn(feature, source));
  }
  // An inline style covers up that the shared one isn't there.
  const bool isOpen = !feature.GetReferencedStyleSelector() && !feature.GetStyleUrl().isEmpty();
  if (isOpen && feature.GetInlineStyleSelector()) {
    const Style* standIn =
        feature.GetBit(kBitLoadFailed) ? Style::GetFailedStyle() : Style::GetFetchingStyle();
    origins.push_back({NameStandIn(standIn), QString(), feature.GetStyleUrl()});
  }
  return origins;
}

QString Origin::ToText() const {
  const QString name = Printable(style);
  if (from == QLatin1String("shared")) {
    return name;
  }
  if (from == QLatin1String("styleMap")) {
    return (map.isNull() ? QStringLiteral("inline style map")
                         : QStringLiteral("style map ") + Printable(map)) +
           QStringLiteral(" > ") + (style.isNull() ? QStringLiteral("inline") : name);
  }
  QString text = from;
  if (!name.isEmpty()) {
    text += QLatin1Char(' ') + name;
  }
  return map.isNull() ? text : text + QStringLiteral(" of style map ") + Printable(map);
}

JsonObject Origin::ToJson() const {
  JsonObject result;
  result.Add("from", from);
  if (!map.isNull()) {
    result.Add("map", map);
  }
  if (!style.isNull()) {
    result.Add("style", style);
  }
  return result;
}

} // namespace tool
