#pragma once

#include "kestan/read/charbuf.h"

#include <QString>

namespace vorrel::kestan {

/// Builds XML text of what a parser reports, as it's kept for content that no schema understands.
///
/// The text depends on the reported characters alone, not on the pieces in which they come, and
/// another parser reports the same for it: reading and writing again changes nothing.
class RawXml {
public:
  explicit RawXml(CharBuf& out) : out_(out) {}

  /// ` name="value"`, zero-terminated, the value escaped.
  void AppendAttribute(const ushort* name, const ushort* value);
  /// Character data outside of a CDATA section. Characters that need it stand in a section of
  /// their own.
  void AppendText(const ushort* text, int length);

  /// Within a CDATA section, each line with markup characters stays a section; others become text.
  void StartCdata();
  void AppendCdata(const ushort* text, int length);
  void EndCdata();

private:
  void EndCdataLine();

  CharBuf& out_;
  int lineStart_ = 0;
};

} // namespace vorrel::kestan
