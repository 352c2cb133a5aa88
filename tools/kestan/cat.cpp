#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/filename.h"
#include "tools/kestan/output.h"

namespace tool {

int Cat(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  const unsigned flags = (arguments.hint ? 0U : vorrel::kestan::kWriteNoHint) |
                         (arguments.hoist ? 0U : vorrel::kestan::kWriteNoHoist) |
                         (arguments.outside ? 0U : vorrel::kestan::kWriteOwnFilesOnly) |
                         (arguments.relative ? vorrel::kestan::kWriteRelativeUrls : 0U);
  return WriteDocument(*document.whole, arguments.output, flags);
}

} // namespace tool
