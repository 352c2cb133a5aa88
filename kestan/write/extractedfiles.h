#pragma once

#include "kestan/write/freenames.h"
#include "kestan/write/sourcefiles.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace vorrel::kestan {

/// The files that are brought out of archives, beside the document that is being written.
class ExtractedFiles {
public:
  explicit ExtractedFiles(const QString& document) : document_(document) {}

  /// Brings the file out under a name that is free there, or takes the one that an earlier write
  /// has brought out, and answers its path. Null when there's nothing to bring out, or it fails.
  QString Extract(const QString& url);
  /// Removes what was brought out.
  void Discard();

private:
  QString Copy(const QString& url, const QString& innerPath);

  QString document_;
  QHash<QString, QString> pathsByUrl_;
  QStringList made_;
  FreeNames names_;
  SourceFiles sources_;
};

} // namespace vorrel::kestan
