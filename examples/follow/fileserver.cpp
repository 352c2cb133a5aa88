#include "fileserver.h"

#include "kestan/host/net.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

using namespace vorrel;

QString FileServer::FindFile(const QString& address) const {
  const QString bare = address.section('#', 0, 0).section('?', 0, 0);
  if (!url.isEmpty()) { // documents of a server don't reach the user's files
    const QString name = QUrl::fromPercentEncoding(bare.mid(url.size()).toUtf8());
    const QString file = QDir::cleanPath(folder + name);
    return bare.startsWith(url) && file.startsWith(folder) ? file : QString();
  }
  if (net::GetFileNameType(address) == net::kFileNameLocalUrl)
    return QUrl(bare).toLocalFile();
  return QFileInfo::exists(address) ? address : bare;
}

FileServer::Answer FileServer::Fetch(const QString& address) {
  const QFileInfo usual(FindFile(address));
  const QString number = '.' + QString::number(++fetches[usual.filePath()]) + '.';
  const QFileInfo numbered(usual.dir(), usual.completeBaseName() + number + usual.suffix());
  QFile file(numbered.isFile() ? numbered.filePath() : usual.filePath());
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
    return {};
  return {QFileInfo(file).fileName(), file.readAll()};
}
