#pragma once

#include "kestan/host/memory.h"
#include "kestan/read/xmlnames.h"

#include <QString>

#include <memory>

struct XML_ParserStruct;
class QTextCodec;

namespace vorrel::kestan {

class ExpatHandler;
class XmlSource;

/// One run of expat over a document: owns the parser, feeds it, and hands what it reports to an
/// `ExpatHandler` as 16-bit text.
class ExpatParser {
public:
  /// Bytes that are read and parsed at a time.
  static constexpr int kPieceSize = 64 * 1024;
  /// Bytes of the attributes of one element.
  static constexpr std::size_t kMaxAttributeBytes = std::size_t(1) << 26;

  enum Result {
    kParsed,
    kFailed,     ///< See `GetErrorCode`.
    kReadFailed, ///< The source gave an error.
    kOtherCodec, ///< The document names an encoding that expat needs help with: see `GetCodec`.
  };

  /// `encoding` is one of expat's own and wins over what the document says. With a `codec`, the
  /// document is decoded by that one.
  ExpatParser(ExpatHandler& handler, const char* encoding, QTextCodec* codec);
  ~ExpatParser();
  ExpatParser(const ExpatParser&) = delete;
  ExpatParser& operator=(const ExpatParser&) = delete;

  Result Parse(XmlSource& source);

  /// Ends the parse from within a call of the handler.
  void Stop();

  int GetErrorCode() const;
  /// expat's words for the error.
  QString GetErrorString() const;
  /// Place in the document: lines from 1, columns from 0, as expat counts them.
  qint64 GetLine() const;
  qint64 GetColumn() const;
  qint64 GetByteCount() const { return byteCount_; }

  /// The codec to begin anew with, after `kOtherCodec`.
  QTextCodec* GetCodec() const { return foundCodec_; }

private:
  struct Callbacks;

  void StartElement(const char* name, const char** attributes);
  void EndElement(const char* name);
  void Characters(const char* text, int length);
  bool ProvideEncoding(const QString& name, int* map);

  ushort* GetBuffer(std::size_t size);

  ExpatHandler& handler_;
  XML_ParserStruct* parser_;
  QTextCodec* codec_;
  QTextCodec* foundCodec_ = nullptr;
  bool decodingFailed_ = false;
  bool stopped_ = false;
  qint64 byteCount_ = 0;
  mmvector<ushort> buffer_; ///< Text of the present call.
  XmlNames names_;
  mmvector<const QString*> open_; ///< Names of the elements now open, null for those not kept.
  mmvector<const ushort*> attributes_;
  mmvector<std::size_t> lengths_;
};

} // namespace vorrel::kestan
