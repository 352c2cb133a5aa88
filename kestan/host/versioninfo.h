#pragma once

#include "kestan/host/export.h"

#include <QString>

namespace vorrel {

/// What the client says about itself, once, before it starts the library.
class KESTAN_EXPORT VersionInfo {
public:
  struct Options {
    /// Whether documents may name local files outside the program's own folders.
    bool allowLocalFilesOutsideInstallation = true;
  };

  /// Name and version of the application; those of the Qt application object by default.
  static QString GetAppNameW();
  static QString GetAppVersionW();
  static void SetApp(const QString& name, const QString& version);

  static bool AllowLocalFilesOutsideInstallation();
  static void SetOptions(const Options& options);
};

} // namespace vorrel
