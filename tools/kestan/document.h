#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"
#include "kestan/read/errorhandler.h"

#include <QString>

namespace tool {

/// A document that was read from a file.
struct Document {
  vorrel::RefPtr<vorrel::kestan::SchemaObject> root; ///< Null when there's an error.
  QString error; ///< Why there's nothing to show, as `FormatError` puts it.
};

/// Reads a KML or KMZ file. `handler`, which may be null, hears of recoverable errors.
Document ReadDocument(const QString& file, vorrel::kestan::IErrorHandler* handler = nullptr);
/// Reads it as if it came from `url`.
Document ReadDocumentAs(const QString& file, const QString& url);

/// The name of a feature; empty for any other object.
QString GetName(const vorrel::kestan::SchemaObject& object);
/// Class, id and name of an object, fit for a terminal.
QString GetTitle(const vorrel::kestan::SchemaObject& object);

/// An error as one line, "file:line:column: message"; without the place when `line` is 0.
QString FormatError(const QString& file, qint64 line, qint64 column, const QString& message);

} // namespace tool
