#pragma once

#include <QByteArray>
#include <QString>

namespace tool {

/// A name of the command line as text. Names are UTF-8; bytes of one that isn't stand as unpaired
/// surrogates, so that the file can be opened all the same.
QString DecodeName(const char* name);
QByteArray EncodeName(const QString& name);
/// False for the name of a file that has no form as text.
bool IsText(const QString& name);

} // namespace tool
