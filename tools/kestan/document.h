#pragma once

#include "kestan/core/reportcode.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"
#include "kestan/read/errorhandler.h"

#include <QString>

namespace vorrel::kestan {
class NetworkLinkControl;
}

namespace tool {

/// A document that was read from a file.
struct Document {
  vorrel::RefPtr<vorrel::kestan::SchemaObject> root; ///< Null when there's an error.
  /// The root with what it holds beside that; may be all that there is.
  vorrel::RefPtr<vorrel::kestan::SchemaObject> whole;
  vorrel::kestan::ParseReport error; ///< Why there's nothing to show.
  QString file;                      ///< As the user named it.

  /// The error as one line, "file:line:column: message"; without the place where there's none.
  QString GetErrorLine() const;
  /// What a server says with the document to the link that fetched it; null for nothing.
  const vorrel::kestan::NetworkLinkControl* GetControl() const;
};

/// Reads a KML or KMZ file, by its name or a "file:" URL, or with "-" standard input. `url` says
/// where the document comes from; without it, that is the file, or the present folder for what
/// isn't read from one, such as a pipe. `handler`, which may be null, hears of recoverable errors
/// and findings.
Document ReadDocument(const QString& file, const QString& url = QString(),
                      vorrel::kestan::IErrorHandler* handler = nullptr);

/// Writes the document to a file, or with "-" or an empty name to standard output. `flags` are from
/// `WriteFlag`. Complains of what goes wrong; the exit status.
int WriteDocument(const vorrel::kestan::SchemaObject& root, const QString& file, unsigned flags);

/// The name of a feature; empty for any other object.
QString GetName(const vorrel::kestan::SchemaObject& object);
/// Class, id and name of an object, fit for a terminal.
QString GetTitle(const vorrel::kestan::SchemaObject& object);

/// "file:line:column"; only the file when `line` is 0.
QString FormatPlace(const QString& file, qint64 line, qint64 column);

} // namespace tool
