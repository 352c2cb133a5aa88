#pragma once

#include <QByteArray>
#include <QString>

namespace vorrel::kestan {

/// What a parser with namespaces objects to in a document, with the line; empty when it's
/// well-formed.
QString FindXmlError(const QByteArray& document);

/// The document as a sequence of events in which names carry their URI and attributes are sorted:
/// equal for two texts that differ only in prefixes, in where they declare them, in CDATA sections
/// and in quotes. Null when the document isn't well-formed.
QString Canonical(const QByteArray& document);

} // namespace vorrel::kestan
