#pragma once

#include "kestan/host/export.h"

#include <QString>

class QFileDevice;

namespace vorrel::file {

/// Moves a file, also to another file system. A file at the destination is replaced in one step:
/// whoever looks sees the old one or the new one. False, and both stay, when that fails.
KESTAN_EXPORT bool move(const QString& from, const QString& to);

/// True when both paths lead to one and the same file that exists.
KESTAN_EXPORT bool isSame(const QString& a, const QString& b);

/// Sends what was written to an open file down to the disk. False when the disk didn't take it.
KESTAN_EXPORT bool sync(QFileDevice& file);

/// Removes a file when the scope ends.
class KESTAN_EXPORT FileDeleter {
public:
  explicit FileDeleter(const QString& path) : path_(path) {}
  ~FileDeleter();
  FileDeleter(const FileDeleter&) = delete;
  FileDeleter& operator=(const FileDeleter&) = delete;

  /// The file stays.
  void Release() { path_.clear(); }

private:
  QString path_;
};

} // namespace vorrel::file
