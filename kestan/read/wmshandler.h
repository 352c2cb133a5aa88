#pragma once

#include "kestan/read/kmlhandler.h"

namespace vorrel::kestan {

/// Reads documents in which names without a prefix are those of WMS. No class of the library is:
/// what such names mean lies with the client, and KML in them needs a declaration.
class KESTAN_EXPORT WmsHandler final : public KmlHandler {
public:
  WmsHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
             ThreadScope* threadScope, IErrorHandler* errorHandler);
};

} // namespace vorrel::kestan
