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
  /// Bytes that are read and parsed at a time, unless a token is longer.
  static constexpr int kPieceSize = 64 * 1024;
  static constexpr int kMaxPieceSize = 1 << 28;
  /// Bytes of the attributes of one element.
  static constexpr std::size_t kMaxAttributeBytes = std::size_t(1) << 26;
  /// What an attribute costs beside its text.
  static constexpr std::size_t kBytesPerAttribute = 200;

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

  /// Throws `std::bad_alloc` where a call of the handler did.
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

  int GetPieceSize(int former);
  void ObeyByteOrderMark(const char* bytes, int size);
  /// False when there are too many of them, or the document type repeats too much.
  bool CheckAttributes(std::size_t bytes);

  ushort* GetBuffer(std::size_t size);

  ExpatHandler& handler_;
  XML_ParserStruct* parser_;
  QTextCodec* codec_;
  const bool isEncodingGiven_;
  QTextCodec* foundCodec_ = nullptr;
  bool decodingFailed_ = false;
  bool stopped_ = false;
  bool outOfMemory_ = false;
  qint64 byteCount_ = 0;
  qint64 tokenStart_ = -1;  ///< Of what expat wants more of.
  mmvector<ushort> buffer_; ///< Text of the present call.
  XmlNames names_;
  mmvector<const QString*> open_; ///< Names of the elements now open, null for those not kept.
  mmvector<const ushort*> attributes_;
  mmvector<std::size_t> lengths_;
};

} // namespace vorrel::kestan
