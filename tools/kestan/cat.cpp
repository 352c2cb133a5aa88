#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/filename.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"

#include <QByteArray>
#include <QFileInfo>
#include <QStringList>

namespace tool {

int Cat(const Arguments& arguments) {
  const QString output = arguments.output == QLatin1String("-") ? QString() : arguments.output;
  if (!IsText(output)) {
    Complain(QStringLiteral("\"%1\" is no name in UTF-8").arg(Printable(output)));
    return kNoOutput;
  }
  if (QFileInfo(output).isDir()) {
    Complain(QStringLiteral("\"%1\" is a folder").arg(Printable(output)));
    return kNoOutput;
  }
  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }

  const unsigned flags = (arguments.hint ? 0U : vorrel::kestan::kWriteNoHint) |
                         (arguments.hoist ? 0U : vorrel::kestan::kWriteNoHoist) |
                         (arguments.outside ? 0U : vorrel::kestan::kWriteOwnFilesOnly) |
                         (arguments.relative ? vorrel::kestan::kWriteRelativeUrls : 0U);
  QByteArray bytes;
  QString error;
  QStringList unreadable;
  QStringList outside;
  {
    const Progress progress("Writing");
    error = output.isEmpty() ? document.whole->WriteKmlString(bytes, flags)
                             : document.whole->WriteKmlFile(output, flags, &unreadable, &outside);
  }
  if (!error.isEmpty()) {
    Complain(output.isEmpty() ? error : QStringLiteral("\"%1\": %2").arg(output, error));
    return kNoOutput;
  }
  for (const QString& file : unreadable)
    Complain(QStringLiteral("\"%1\": can't read \"%2\"; it isn't packed").arg(output, file));
  for (const QString& file : outside)
    Complain(QStringLiteral("\"%1\": \"%2\" lies outside of the document's folder; only --outside "
                            "packs it")
                 .arg(Printable(output), Printable(file)));
  if (output.isEmpty() && !Print(bytes))
    return kNoOutput;
  return unreadable.isEmpty() && outside.isEmpty() ? kFine : kFindings;
}

} // namespace tool
