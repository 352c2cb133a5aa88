#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"

#include <QByteArray>
#include <QFileInfo>

namespace tool {

int Cat(const Arguments& arguments) {
  const QString& output = arguments.output;
  if (QFileInfo(output).suffix().compare(QLatin1String("kmz"), Qt::CaseInsensitive) == 0) {
    Complain(QStringLiteral("\"%1\": KMZ output isn't supported yet; use a name that ends in .kml")
                 .arg(output));
    return kNoOutput;
  }

  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.error);
    return kFindings;
  }

  const unsigned flags = (arguments.hint ? 0U : vorrel::kestan::kWriteNoHint) |
                         (arguments.hoist ? 0U : vorrel::kestan::kWriteNoHoist);
  QByteArray bytes;
  QString error;
  {
    const Progress progress("Writing");
    error = output.isEmpty() ? document.root->WriteKmlString(bytes, flags)
                             : document.root->WriteKmlFile(output, flags);
  }
  if (!error.isEmpty()) {
    Complain(output.isEmpty() ? error : QStringLiteral("\"%1\": %2").arg(output, error));
    return kNoOutput;
  }
  return output.isEmpty() && !Print(bytes) ? kNoOutput : kFine;
}

} // namespace tool
