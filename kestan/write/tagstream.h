#pragma once

#include "kestan/core/namespace.h"
#include "kestan/host/export.h"
#include "kestan/host/utf8ostream.h"

class QByteArray;
class QString;

namespace vorrel::kestan {

class Schema;

/// The text of a document as it grows, tag by tag, at some depth.
class KESTAN_EXPORT TagStream {
public:
  /// The document so far: bytes and text as they are, and escaped.
  Utf8OStream& stream() { return stream_; }
  XmlUtf8OStream xml() { return XmlUtf8OStream(stream_); }

  /// Present depth of the elements.
  int indent() const { return indent_; }
  void SetIndent(int depth) { indent_ = depth; }

  void WriteIndent();
  /// The indentation, "<", and the name behind the prefix of its namespace.
  void WriteTagStart(Namespace ns, const QString& name);
  /// "</", the name behind its prefix, ">" and a line feed.
  void WriteTagEnd(Namespace ns, const QString& name);
  /// The same for a name that is ready.
  void WriteTagStart(const QByteArray& tag);
  void WriteTagEnd(const QByteArray& tag);
  /// The same for the element of a class.
  void WriteTagStart(const Schema& schema);
  void WriteTagEnd(const Schema& schema);

protected:
  /// From now on, elements of the extension declare its prefix themselves: they may lie in one that
  /// gives it another meaning.
  void SetDeclaresExtension() { declaresExtension_ = true; }

private:
  void DeclareExtension();

  Utf8OStream stream_;
  int indent_ = 0;
  bool declaresExtension_ = false;
};

} // namespace vorrel::kestan
