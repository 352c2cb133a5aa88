#include "kestan/write/sourcefiles.h"

#include "kestan/host/kmz.h"
#include "kestan/host/kmzarchive.h"
#include "kestan/host/net.h"
#include "kestan/host/path.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace vorrel::kestan {

namespace {

bool IsReadableFile(const QString& path) {
  // Only a plain file is opened: a pipe would block, a device may have no end.
  const QFileInfo info(path);
  return info.isFile() && info.isReadable();
}

QFile& Opened(QFile& file) {
  file.open(QIODevice::ReadOnly);
  return file;
}

} // namespace

struct SourceFiles::OpenArchive {
  explicit OpenArchive(const QString& path) : file(path), contents(Opened(file)) {}

  QFile file;
  kmz::Archive contents;
};

SourceFiles::SourceFiles() = default;

SourceFiles::~SourceFiles() = default;

bool SourceFiles::Locate(const QString& url, SourceFile& source) {
  QString archive;
  QString inner;
  if (net::Fetcher::FindInKmz(url, &archive, &inner)) {
    for (const QString& path : {inner, file::Unescaped(inner)}) {
      QString reason;
      kmz::Archive& contents = GetArchive(archive).contents;
      if (path.isEmpty() || !contents.Find(path) || !contents.IsReadable(kmz::GetLimits(), reason))
        continue;
      source.path = archive;
      source.innerPath = path;
      return true;
    }
    return false;
  }
  const bool isFileUrl = url.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
  const QString literal = isFileUrl ? file::Cleaned(QUrl(url).toLocalFile()) : url;
  const QString withoutQuery = isFileUrl ? literal : url.left(file::GetPathEnd(url));
  for (const QString& path :
       {literal, file::UnescapedLocal(literal), withoutQuery, file::UnescapedLocal(withoutQuery)}) {
    if (!path.isEmpty() && IsReadableFile(path)) {
      source.path = path;
      return true;
    }
  }
  return false;
}

SourceFiles::OpenArchive& SourceFiles::GetArchive(const QString& path) {
  if (!archive_ || archive_->file.fileName() != path)
    archive_ = std::make_unique<OpenArchive>(path);
  return *archive_;
}

bool SourceFiles::Open(QFile& file) {
  return IsReadableFile(file.fileName()) && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

QByteArray SourceFiles::ReadFromArchive(const SourceFile& source) {
  kmz::Archive& contents = GetArchive(source.path).contents;
  QString reason;
  return contents.Find(source.innerPath) ? contents.Read(kmz::GetLimits(), reason) : QByteArray();
}

} // namespace vorrel::kestan
