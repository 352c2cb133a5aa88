#include "kestan/write/writestate.h"

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

namespace {

const char* GetPrefix(Namespace ns) { return ns == Namespace::kKml ? "" : kExtPrefixColon; }

} // namespace

void WriteState::WriteIndent() {
  const std::size_t depth = static_cast<std::size_t>(std::clamp(indent_, 0, kMaxIndent));
  stream_.WriteRawBytes(GIndent(indent_), depth);
}

void WriteState::WriteTagStart(Namespace ns, const QString& name) {
  const std::size_t depth = static_cast<std::size_t>(std::clamp(indent_, 0, kMaxIndent));
  char* const out = stream_.Reserve(kMaxIndent + 1);
  std::memset(out, '\t', depth);
  out[depth] = '<';
  stream_.Commit(out + depth + 1);
  stream_ << GetPrefix(ns) << name;
}

void WriteState::WriteTagEnd(Namespace ns, const QString& name) {
  stream_ << "</" << GetPrefix(ns) << name << ">\n";
}

} // namespace vorrel::kestan
