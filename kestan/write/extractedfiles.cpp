#include "kestan/write/extractedfiles.h"

#include "kestan/host/net.h"

#include <QFile>
#include <QFileInfo>

namespace vorrel::kestan {

namespace {

bool Holds(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  return QFileInfo(path).size() == bytes.size() && SourceFiles::Open(file) &&
         file.readAll() == bytes;
}

} // namespace

QString ExtractedFiles::Extract(const QString& url) {
  QString archive;
  QString innerPath;
  if (!net::Fetcher::FindInKmz(url, &archive, &innerPath))
    return QString();
  auto known = pathsByUrl_.constFind(url);
  if (known == pathsByUrl_.constEnd())
    known = pathsByUrl_.insert(url, Copy(url, innerPath));
  return *known;
}

QString ExtractedFiles::Copy(const QString& url, const QString& innerPath) {
  SourceFile source;
  const QByteArray bytes =
      sources_.Locate(url, source) ? sources_.ReadFromArchive(source) : QByteArray();
  if (bytes.isEmpty())
    return QString();

  const QString folder = QFileInfo(document_).absolutePath() + QLatin1Char('/');
  const QFileInfo info(innerPath);
  const auto makePath = [&](int attempt) {
    if (attempt == 0)
      return folder + info.fileName();
    return folder + info.baseName() + QLatin1Char('_') + QString::number(attempt - 1) +
           QLatin1Char('.') + info.completeSuffix();
  };
  QFile file(names_.Find(info.fileName(), makePath, [&bytes](const QString& path) {
    return !QFileInfo::exists(path) || Holds(path, bytes);
  }));
  if (file.exists())
    return file.fileName();
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
    return QString();
  if (file.write(bytes) != bytes.size() || !file.flush()) {
    file.remove();
    return QString();
  }
  made_ += file.fileName();
  return file.fileName();
}

void ExtractedFiles::Discard() {
  for (const QString& path : made_)
    QFile::remove(path);
}

} // namespace vorrel::kestan
