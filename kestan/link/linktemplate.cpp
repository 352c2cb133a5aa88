#include "kestan/link/linktemplate.h"

#include "kestan/host/system.h"
#include "kestan/host/utf8ostream.h"
#include "kestan/host/versioninfo.h"
#include "kestan/link/viewparams.h"
#include "kestan/read/namespaces.h"

#include <QStringView>

#include <algorithm>

namespace vorrel::kestan {

namespace {

struct ViewPlaceholder {
  QLatin1String name;
  double ViewParams::*value;
  double scale;
};

constexpr double kDegrees = 180.0;

const ViewPlaceholder kViewPlaceholders[] = {
    {QLatin1String("north"), &ViewParams::north, kDegrees},
    {QLatin1String("south"), &ViewParams::south, kDegrees},
    {QLatin1String("east"), &ViewParams::east, kDegrees},
    {QLatin1String("west"), &ViewParams::west, kDegrees},
    {QLatin1String("bboxNorth"), &ViewParams::north, kDegrees},
    {QLatin1String("bboxSouth"), &ViewParams::south, kDegrees},
    {QLatin1String("bboxEast"), &ViewParams::east, kDegrees},
    {QLatin1String("bboxWest"), &ViewParams::west, kDegrees},
    {QLatin1String("lookatLon"), &ViewParams::lookatLon, 1.0},
    {QLatin1String("lookatLat"), &ViewParams::lookatLat, 1.0},
    {QLatin1String("lookatRange"), &ViewParams::lookatRange, 1.0},
    {QLatin1String("lookatTerrainLon"), &ViewParams::lookatTerrainLon, 1.0},
    {QLatin1String("lookatTerrainLat"), &ViewParams::lookatTerrainLat, 1.0},
    {QLatin1String("lookatTerrainAlt"), &ViewParams::lookatTerrainAlt, 1.0},
    {QLatin1String("cameraLon"), &ViewParams::cameraLon, 1.0},
    {QLatin1String("cameraLat"), &ViewParams::cameraLat, 1.0},
    {QLatin1String("cameraAlt"), &ViewParams::cameraAlt, 1.0},
    {QLatin1String("lookatTilt"), &ViewParams::lookatTilt, 1.0},
    {QLatin1String("lookatHeading"), &ViewParams::lookatHeading, 1.0},
    {QLatin1String("horizFov"), &ViewParams::horizFov, 1.0},
    {QLatin1String("vertFov"), &ViewParams::vertFov, 1.0},
    {QLatin1String("horizPixels"), &ViewParams::horizPixels, 1.0},
    {QLatin1String("vertPixels"), &ViewParams::vertPixels, 1.0},
    {QLatin1String("terrainEnabled"), &ViewParams::terrainEnabled, 1.0},
};

/// Copies `text`, with each "[name]" replaced for which `lookUp(name, result)` appends a value. One
/// pass, so that a bracket in a value is no placeholder.
template <class LookUp> QString Expand(const QString& text, LookUp lookUp) {
  QString result;
  const QStringView whole(text);
  qsizetype copied = 0;
  qsizetype open = -1;
  for (qsizetype i = 0; i < whole.size(); ++i) {
    if (whole[i] == QLatin1Char('[')) {
      open = i;
    } else if (whole[i] == QLatin1Char(']') && open >= copied) {
      result.append(whole.data() + copied, static_cast<int>(open - copied));
      if (lookUp(whole.mid(open + 1, i - open - 1), result))
        copied = i + 1;
      else
        copied = open;
    }
  }
  result.append(whole.data() + copied, static_cast<int>(whole.size() - copied));
  return result;
}

QString FormEncode(const QString& text) {
  Utf8OStream stream;
  UrlUtf8OStream(stream) << text;
  return QString::fromUtf8(stream.data(), static_cast<int>(stream.size()));
}

} // namespace

QString ExpandHttpQuery(const QString& text) {
  return Expand(text, [](QStringView name, QString& result) {
    if (name == QLatin1String("clientVersion"))
      result += VersionInfo::GetAppVersionW();
    else if (name == QLatin1String("kmlVersion"))
      result += QLatin1String(kKmlVersionString);
    else if (name == QLatin1String("clientName"))
      result += FormEncode(VersionInfo::GetAppNameW());
    else if (const QString language = System::GetCurrentLocale().GetLanguage();
             name == QLatin1String("language") && language.size() == 2)
      result += language;
    else
      return false;
    return true;
  });
}

QString ExpandViewFormat(const QString& text, const ViewParams& view) {
  return Expand(text, [&view](QStringView name, QString& result) {
    const auto place =
        std::find_if(std::begin(kViewPlaceholders), std::end(kViewPlaceholders),
                     [name](const ViewPlaceholder& known) { return name == known.name; });
    if (place == std::end(kViewPlaceholders))
      return false;
    constexpr int kDigits = 16;
    result += QString::number(view.*place->value * place->scale, 'g', kDigits);
    return true;
  });
}

QString AppendQuery(QString url, const QString& query) {
  if (query.isEmpty())
    return url;
  const auto hash = url.indexOf(QLatin1Char('#'));
  const QString fragment = hash < 0 ? QString() : url.mid(hash);
  url.truncate(hash < 0 ? url.size() : hash);
  if (!url.contains(QLatin1Char('?')))
    url += QLatin1Char('?');
  else if (!url.endsWith(QLatin1Char('?')) && !url.endsWith(QLatin1Char('&')))
    url += QLatin1Char('&');
  return url + query + fragment;
}

} // namespace vorrel::kestan
