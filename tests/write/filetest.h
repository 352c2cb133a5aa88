#pragma once

#include "tests/support/kmltest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace vorrel::kestan {

/// Writes into a folder of its own.
class FileTest : public KmlTest {
protected:
  QString Path(const QString& name) const { return folder_.filePath(name); }
  QStringList Files() const {
    return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
  }
  /// Answers the path.
  QString MakeFile(const QString& name, const QByteArray& contents) const {
    QDir(folder_.path()).mkpath(QFileInfo(Path(name)).path());
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(contents);
    return file.fileName();
  }
  static QByteArray Contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir folder_;
};

} // namespace vorrel::kestan
