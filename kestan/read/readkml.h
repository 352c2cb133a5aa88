#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/export.h"
#include "kestan/read/errorhandler.h"

#include <QByteArray>
#include <QString>

namespace vorrel::kestan {

/// Reads a KML or KMZ file: the front door, for clients that need nothing special of a parse.
///
/// Null when the file can't be read, with the reason in `error`, or when the document holds
/// nothing to return; see `ExpatHandler::LoadXml`. `errorHandler` may be null. On a thread that has
/// a `ThreadContext`.
KESTAN_EXPORT RefPtr<SchemaObject> ReadKmlFile(const QString& path, QString* error = nullptr,
                                               IErrorHandler* errorHandler = nullptr);
/// Reads the bytes of such a file, which came from `url`.
KESTAN_EXPORT RefPtr<SchemaObject> ReadKmlBytes(const QByteArray& bytes, const QString& url,
                                                QString* error = nullptr,
                                                IErrorHandler* errorHandler = nullptr);

} // namespace vorrel::kestan
