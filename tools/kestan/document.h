#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"
#include "kestan/read/errorhandler.h"

#include <QString>

namespace tool {

/// A document that was read from a file.
struct Document {
  vorrel::RefPtr<vorrel::kestan::SchemaObject> root; ///< Null when the document was refused.
  QString error;                                     ///< Why it was refused, as the library says it.
};

/// Reads a KML or KMZ file. `handler`, which may be null, hears of recoverable errors.
Document ReadDocument(const QString& file, vorrel::kestan::IErrorHandler* handler = nullptr);

/// An error of the reader as one line: "file:line:column: message", or without the place when the
/// reader gives none.
QString FormatError(const QString& file, const QString& error);

} // namespace tool
