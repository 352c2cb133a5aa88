#include "kestan/host/versioninfo.h"

#include <QCoreApplication>

#include <atomic>
#include <mutex>

namespace vorrel {

namespace {

struct App {
  std::mutex mutex;
  QString name;
  QString version;
};

App& ClientApp() {
  static App app;
  return app;
}

std::atomic<bool> s_allowLocalFiles{VersionInfo::Options().allowLocalFilesOutsideInstallation};

} // namespace

QString VersionInfo::GetAppNameW() {
  App& app = ClientApp();
  const std::lock_guard<std::mutex> guard(app.mutex);
  return app.name.isEmpty() ? QCoreApplication::applicationName() : app.name;
}

QString VersionInfo::GetAppVersionW() {
  App& app = ClientApp();
  const std::lock_guard<std::mutex> guard(app.mutex);
  return app.version.isEmpty() ? QCoreApplication::applicationVersion() : app.version;
}

void VersionInfo::SetApp(const QString& name, const QString& version) {
  App& app = ClientApp();
  const std::lock_guard<std::mutex> guard(app.mutex);
  app.name = name;
  app.version = version;
}

bool VersionInfo::AllowLocalFilesOutsideInstallation() { return s_allowLocalFiles; }

void VersionInfo::SetOptions(const Options& options) {
  s_allowLocalFiles = options.allowLocalFilesOutsideInstallation;
}

} // namespace vorrel
