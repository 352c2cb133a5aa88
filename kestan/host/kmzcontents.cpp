#include "kestan/host/kmzcontents.h"

#include "kestan/host/kmzdirectory.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <memory>

namespace vorrel::kmz {

namespace {

struct Contents {
  QString path;
  QDateTime modified;
  qint64 size = -1;
  QString documentFolder;
  std::unique_ptr<Directory> directory; ///< Only where names were asked for; it may be large.
};

Contents& GetContents(const QString& path, bool needsNames) {
  static thread_local Contents contents;
  const QFileInfo info(path);
  const QDateTime modified = info.lastModified();
  const bool isKnown =
      contents.path == path && contents.size == info.size() && contents.modified == modified;
  if (isKnown && (contents.directory || !needsNames))
    return contents;
  QFile file(path);
  auto directory = std::make_unique<Directory>();
  if (file.open(QIODevice::ReadOnly))
    directory->Read(file);
  contents = {path, modified, info.size(), directory->GetDocumentFolder(), nullptr};
  if (needsNames)
    contents.directory = std::move(directory);
  return contents;
}

} // namespace

QString GetDocumentFolder(const QString& path) { return GetContents(path, false).documentFolder; }

bool HasReference(const QString& path, const QString& name) {
  return GetContents(path, true).directory->FindReference(name);
}

} // namespace vorrel::kmz
