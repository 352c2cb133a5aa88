#pragma once

#include "tests/support/kmltest.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace vorrel::kestan {

struct Result {
  int status = -1;
  QString out;
  QString err;
};

/// Runs the command-line tool on files in a folder of its own.
class KestanToolTest : public KmlTest {
protected:
  KestanToolTest() { environment_ = QProcessEnvironment::systemEnvironment(); }

  Result Run(const QStringList& words, const QString& standardOutput = QString()) const {
    return Pipe(QByteArray(), words, standardOutput);
  }
  /// With `input` on standard input.
  Result Pipe(const QByteArray& input, const QStringList& words,
              const QString& standardOutput = QString()) const {
    QProcess process;
    process.setProcessEnvironment(environment_);
    process.setWorkingDirectory(folder_.path());
    if (!standardOutput.isNull()) {
      process.setStandardOutputFile(standardOutput);
    }
    process.start(QStringLiteral(KESTAN_TOOL), words);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
  }

  QString MakeFile(const QString& name, const QByteArray& bytes) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }
  QString Path(const QString& name) const { return folder_.filePath(name); }
  QByteArray Contents(const QString& name) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
  }

  QProcessEnvironment environment_;

private:
  QTemporaryDir folder_;
};

} // namespace vorrel::kestan
