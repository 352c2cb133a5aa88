#pragma once

#include "kestan/write/freenames.h"
#include "kestan/write/sourcefiles.h"

#include <QHash>
#include <QString>

namespace vorrel::kestan {

/// The files that are brought out of archives, beside the document that is being written.
class ExtractedFiles {
public:
  explicit ExtractedFiles(const QString& document) : document_(document) {}

  /// Brings the file out under a name that is free there, and answers its path. Null when there's
  /// nothing to bring out, or it fails.
  QString Extract(const QString& url);

private:
  QString Copy(const QString& url, const QString& innerPath);

  QString document_;
  QHash<QString, QString> pathsByUrl_;
  FreeNames names_;
  SourceFiles sources_;
};

} // namespace vorrel::kestan
