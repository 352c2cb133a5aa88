#include "kestan/read/wmshandler.h"

namespace vorrel::kestan {

WmsHandler::WmsHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
                       ThreadScope* threadScope, IErrorHandler* errorHandler)
    : KmlHandler(url, access, memoryManager, threadScope, errorHandler) {
  SetDefaultNamespace(Namespace::kWms);
}

} // namespace vorrel::kestan
