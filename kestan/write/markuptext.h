#pragma once

class QString;

namespace vorrel::kestan {

class SchemaObject;
class WriteState;

/// Writes a text that may hold markup: in a CDATA section if it does, else escaped. The sources of
/// its image tags become what they are in this output.
void WriteMarkupText(const QString& text, const SchemaObject& object, WriteState& state);

} // namespace vorrel::kestan
