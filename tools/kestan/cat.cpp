#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"

#include <QByteArray>
#include <QStringList>

namespace tool {

int Cat(const Arguments& arguments) {
  const QString& output = arguments.output;
  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }

  const unsigned flags = (arguments.hint ? 0U : vorrel::kestan::kWriteNoHint) |
                         (arguments.hoist ? 0U : vorrel::kestan::kWriteNoHoist);
  QByteArray bytes;
  QString error;
  QStringList unreadable;
  {
    const Progress progress("Writing");
    error = output.isEmpty() ? document.root->WriteKmlString(bytes, flags)
                             : document.root->WriteKmlFile(output, flags, &unreadable);
  }
  if (!error.isEmpty()) {
    Complain(output.isEmpty() ? error : QStringLiteral("\"%1\": %2").arg(output, error));
    return kNoOutput;
  }
  for (const QString& file : unreadable)
    Complain(QStringLiteral("\"%1\": can't read \"%2\"; it isn't packed").arg(output, file));
  if (output.isEmpty() && !Print(bytes))
    return kNoOutput;
  return unreadable.isEmpty() ? kFine : kFindings;
}

} // namespace tool
