#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <memory>
#include <vector>

namespace vorrel {

/// The answer to a look-up: whether there is such a resource, and where it lies.
struct ResourceRecord {
  bool found = false;
  QString text;
};

/// A place where resources are looked for.
class KESTAN_EXPORT IResourceLoader {
public:
  virtual ~IResourceLoader();
  virtual ResourceRecord Find(const QString& name, const QString& type) const = 0;
};

/// Looks among the Qt resources under ":/kestan/"; the text is the path there.
class KESTAN_EXPORT QtResourceLoader final : public IResourceLoader {
public:
  ResourceRecord Find(const QString& name, const QString& type) const override;
};

/// Looks in the resource directory of the system; the text is the file's path.
class KESTAN_EXPORT FileResourceLoader final : public IResourceLoader {
public:
  ResourceRecord Find(const QString& name, const QString& type) const override;
};

/// Finds resources by name and type through its loaders. Loaders are added before it is used; from
/// then on any thread may look up.
class KESTAN_EXPORT ResourceManager {
public:
  /// Type of images.
  static constexpr const char* kResourceTypePng = "png";

  void AddLoader(std::unique_ptr<IResourceLoader> loader);
  /// The record of the first loader that finds the resource.
  ResourceRecord Find(const QString& name, const QString& type) const;

private:
  std::vector<std::unique_ptr<IResourceLoader>> loaders_;
};

/// Registers a file of Qt resources, "<name>.rcc" in the resource directory, for as long as this
/// lives. There may be no such file.
class KESTAN_EXPORT QResourceRegistrar {
public:
  explicit QResourceRegistrar(const QString& name);
  ~QResourceRegistrar();
  QResourceRegistrar(const QResourceRegistrar&) = delete;
  QResourceRegistrar& operator=(const QResourceRegistrar&) = delete;

  bool IsRegistered() const { return registered_; }

private:
  const QString path_;
  const bool registered_;
};

} // namespace vorrel
