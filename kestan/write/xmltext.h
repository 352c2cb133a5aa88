#pragma once

#include <QString>
#include <QStringView>

namespace vorrel::kestan {

class Utf8OStream;

/// The text that escaped text stands for. A reference that means nothing stays as it is.
QString DecodeReferences(QStringView text);

/// Writes text that is escaped already. What would break the document in it is escaped too, so
/// that "&amp;" stays and a lone "&" becomes "&amp;".
void WriteEscapedText(Utf8OStream& stream, QStringView text);

/// Writes text in CDATA sections: one, unless "]]>" or a carriage return parts it.
void WriteCdataSection(Utf8OStream& stream, QStringView text);

} // namespace vorrel::kestan
