#include "kestan/host/resources.h"

#include "kestan/host/system.h"

#include <QFileInfo>
#include <QResource>

namespace vorrel {

namespace {

/// The name comes from documents, so it mustn't lead out of the folder.
ResourceRecord FindFile(const QString& folder, const QString& name, const QString& type) {
  if (name.isEmpty() || name.contains(QLatin1String("..")))
    return {};
  const QString path = folder + QLatin1Char('/') + name + QLatin1Char('.') + type;
  return QFileInfo(path).isFile() ? ResourceRecord{true, path} : ResourceRecord{};
}

QString ResourceFile(const QString& name) {
  return System::GetResourceDirectory() + QLatin1Char('/') + name + QLatin1String(".rcc");
}

} // namespace

IResourceLoader::~IResourceLoader() = default;

ResourceRecord QtResourceLoader::Find(const QString& name, const QString& type) const {
  return FindFile(QStringLiteral(":/kestan"), name, type);
}

ResourceRecord FileResourceLoader::Find(const QString& name, const QString& type) const {
  return FindFile(System::GetResourceDirectory(), name, type);
}

void ResourceManager::AddLoader(std::unique_ptr<IResourceLoader> loader) {
  loaders_.push_back(std::move(loader));
}

ResourceRecord ResourceManager::Find(const QString& name, const QString& type) const {
  for (const auto& loader : loaders_) {
    ResourceRecord record = loader->Find(name, type);
    if (record.found)
      return record;
  }
  return {};
}

QResourceRegistrar::QResourceRegistrar(const QString& name)
    : path_(ResourceFile(name)),
      registered_(QFileInfo(path_).isFile() && QResource::registerResource(path_)) {}

QResourceRegistrar::~QResourceRegistrar() {
  if (registered_)
    QResource::unregisterResource(path_);
}

} // namespace vorrel
