#pragma once

#include "kestan/host/export.h"
#include "kestan/host/settings.h"

namespace vorrel::kestan {

/// The library's settings, group "Kestan". Read from all threads; how a client keeps them is its
/// own matter.
class KESTAN_EXPORT KestanOptions final : public SettingGroup {
public:
  KestanOptions();
  ~KestanOptions();

  /// What a recoverable KML error does: 0 goes on silently, 1 reports to the `IErrorHandler`,
  /// 2 ends the parse, 3 goes on silently and drops unknown content.
  IntSetting kmlErrorHandling;
  StringSetting currentKmlVersion;        ///< The KML version that the client reports.
  StringSetting hintTarget;               ///< Fallback target of the `hint` attribute.
  BoolSetting forceEnableExperimentalKml; ///< For the client.
};

struct KESTAN_EXPORT KestanOptionsContext {
  static KestanOptions kestanOptions;
};

} // namespace vorrel::kestan
