#pragma once

#include <QByteArray>
#include <QString>

/// Names of an archive's entries.
namespace vorrel::kmz {

/// A name with "/" for backslashes, and without "/" and "./" in front.
QString EntryPath(QString name);

/// The form in which two names are compared: their path without its case, composed and decomposed
/// letters alike.
QString PlainName(const QString& name);

QString DecodeCodePage437(const QByteArray& name);

} // namespace vorrel::kmz
