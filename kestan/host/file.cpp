#include "kestan/host/file.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace vorrel::file {

namespace {

std::filesystem::path NativePath(const QString& path) {
  return std::filesystem::path(QFile::encodeName(path).toStdString());
}

bool RenameOver(const QString& from, const QString& to) {
  std::error_code error;
  std::filesystem::rename(NativePath(from), NativePath(to), error);
  return !error;
}

/// A copy beside the destination, from where renaming is one step.
QString CopyBeside(const QString& from, const QString& to) {
  QTemporaryFile copy(to + QLatin1String(".XXXXXX"));
  copy.setAutoRemove(false);
  if (!copy.open())
    return QString();
  const QString path = copy.fileName();
  copy.close();
  std::error_code error;
  std::filesystem::copy_file(NativePath(from), NativePath(path),
                             std::filesystem::copy_options::overwrite_existing, error);
  if (!error)
    return path;
  QFile::remove(path);
  return QString();
}

} // namespace

bool move(const QString& from, const QString& to) {
  if (RenameOver(from, to))
    return true;
  if (!QFileInfo(from).isFile() || QFileInfo(to).isDir())
    return false;
  const QString copy = CopyBeside(from, to);
  if (copy.isEmpty())
    return false;
  if (!RenameOver(copy, to)) {
    QFile::remove(copy);
    return false;
  }
  QFile::remove(from);
  return true;
}

bool isSame(const QString& a, const QString& b) {
  std::error_code error;
  return std::filesystem::equivalent(NativePath(a), NativePath(b), error) && !error;
}

bool sync(QFileDevice& file) {
  // Some file systems have nothing to wait for, and say so.
  return file.flush() && (::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP);
}

FileDeleter::~FileDeleter() {
  if (!path_.isEmpty())
    QFile::remove(path_);
}

} // namespace vorrel::file
