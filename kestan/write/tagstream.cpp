#include "kestan/write/tagstream.h"

#include "kestan/core/schema.h"
#include "kestan/read/namespaces.h" // the URI of the extension
#include "kestan/write/xmlname.h"

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

namespace {

/// The class whose name an element has. Where that of a class which a document declares can't be
/// one, or means another class, its base gives the name.
const Schema& GetNamed(const Schema& schema) {
  const Schema* named = &schema;
  while (named->IsCustom() && (!IsNcName(named->GetName()) ||
                               Schema::FindNamedSchema(named->GetName(), Namespace::kKml)))
    named = named->GetBase();
  return *named;
}

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
  const Schema& named = schema.GetTag().isEmpty() ? GetNamed(schema) : schema;
  if (named.GetTag().isEmpty())
    WriteTagStart(named.GetNamespace(), named.GetName());
  else
    WriteTagStart(named.GetTag());
}

void TagStream::WriteTagEnd(const Schema& schema) {
  const Schema& named = schema.GetTag().isEmpty() ? GetNamed(schema) : schema;
  if (named.GetTag().isEmpty())
    WriteTagEnd(named.GetNamespace(), named.GetName());
  else
    WriteTagEnd(named.GetTag());
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
