#include "kestan/core/kestanoptions.h"

#include "kestan/core/namespace.h"

namespace vorrel::kestan {

KestanOptions KestanOptionsContext::kestanOptions;

KestanOptions::KestanOptions()
    : SettingGroup(QStringLiteral("Kestan")),
      kmlErrorHandling(*this, QStringLiteral("kmlErrorHandling"), 0),
      currentKmlVersion(*this, QStringLiteral("currentKmlVersion"),
                        QLatin1String(kKmlVersionString)),
      hintTarget(*this, QStringLiteral("hintTarget"), QString()),
      forceEnableExperimentalKml(*this, QStringLiteral("forceEnableExperimentalKml"), false) {}

KestanOptions::~KestanOptions() = default;

} // namespace vorrel::kestan
