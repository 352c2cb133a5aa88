#pragma once

#include <QString>

namespace vorrel::kestan {

/// What stands for a character between the quotes of an attribute: markup characters as entities,
/// and tabs and line breaks, which a parser would turn into blanks, as references. Null for the
/// character itself.
const char* GetAttributeReference(ushort c);

QString EscapeAttributeValue(const QString& text);
void AppendAttributeValue(QString& out, const QString& text);

} // namespace vorrel::kestan
