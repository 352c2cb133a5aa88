#include "kestan/write/tagstream.h"

#include "kestan/core/schema.h"
#include "kestan/read/namespaces.h" // the URI of the extension

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

namespace {

const char* GetPrefix(Namespace ns) { return ns == Namespace::kKml ? "" : kExtPrefixColon; }

} // namespace

void TagStream::WriteIndent() {
  const std::size_t depth = static_cast<std::size_t>(std::clamp(indent_, 0, kMaxIndent));
  stream_.WriteRawBytes(GIndent(indent_), depth);
}

void TagStream::WriteTagStart(Namespace ns, const QString& name) {
  WriteIndent();
  stream_ << "<" << GetPrefix(ns) << name;
  if (declaresExtension_ && ns != Namespace::kKml)
    DeclareExtension();
}

void TagStream::DeclareExtension() {
  stream_ << " xmlns:" << kExtPrefix << "=\"" << NamespaceEnumToString(Namespace::kExt) << "\"";
}

void TagStream::WriteTagEnd(Namespace ns, const QString& name) {
  stream_ << "</" << GetPrefix(ns) << name << ">\n";
}

void TagStream::WriteTagStart(const Schema& schema) {
  if (schema.GetTag().isEmpty())
    WriteTagStart(schema.GetNamespace(), schema.GetName());
  else
    WriteTagStart(schema.GetTag());
}

void TagStream::WriteTagEnd(const Schema& schema) {
  if (schema.GetTag().isEmpty())
    WriteTagEnd(schema.GetNamespace(), schema.GetName());
  else
    WriteTagEnd(schema.GetTag());
}

void TagStream::WriteTagStart(const QByteArray& tag) {
  const std::size_t depth = static_cast<std::size_t>(std::clamp(indent_, 0, kMaxIndent));
  const std::size_t size = static_cast<std::size_t>(tag.size());
  char* out = stream_.Reserve(kMaxIndent + 1 + size);
  std::memcpy(out, GIndent(kMaxIndent), kMaxIndent);
  out += depth;
  *out++ = '<';
  std::memcpy(out, tag.constData(), size);
  stream_.Commit(out + size);
  if (declaresExtension_ && tag.startsWith(kExtPrefixColon))
    DeclareExtension();
}

void TagStream::WriteTagEnd(const QByteArray& tag) {
  const std::size_t size = static_cast<std::size_t>(tag.size());
  char* out = stream_.Reserve(size + 4);
  out = std::copy_n("</", 2, out);
  std::memcpy(out, tag.constData(), size);
  stream_.Commit(std::copy_n(">\n", 2, out + size));
}

} // namespace vorrel::kestan
