#include "kestan/read/expatparser.h"

#include "kestan/read/expathandler.h"
#include "kestan/read/xmlsource.h"

#include <QTextCodec>

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace vorrel::kestan {

namespace {

/// Appends one character to `out`; `text` is at a byte above 0x7F. expat hands over well-formed
/// UTF-8 only; the bounds are watched all the same.
const char* DecodeCharacter(const char* text, const char* end, ushort*& out) {
  const auto byte = [](char c) { return static_cast<uint>(static_cast<unsigned char>(c)); };
  const uint lead = byte(*text++);
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (end - text < more) {
    *out++ = QChar::ReplacementCharacter;
    return end;
  }
  uint code = lead & (0x3FU >> more);
  for (int i = 0; i < more; ++i)
    code = code << 6 | (byte(*text++) & 0x3F);
  if (code < 0x10000) {
    *out++ = static_cast<ushort>(code);
  } else {
    *out++ = QChar::highSurrogate(code);
    *out++ = QChar::lowSurrogate(code);
  }
  return text;
}

/// Converts UTF-8 into 16-bit text, for which there's room for one unit a byte. Answers the end of
/// the text.
ushort* Widen(const char* text, std::size_t length, ushort* out) {
  constexpr std::size_t kBlock = 16;
  const char* const end = text + length;
  while (text != end) {
    while (static_cast<std::size_t>(end - text) >= kBlock) {
      std::uint64_t halves[2];
      std::memcpy(halves, text, kBlock);
      if ((halves[0] | halves[1]) & 0x8080808080808080U)
        break;
      // Between arrays of a constant size that can't overlap, so that it becomes vector code.
      unsigned char narrow[kBlock];
      ushort wide[kBlock];
      std::memcpy(narrow, text, kBlock);
      for (std::size_t i = 0; i < kBlock; ++i)
        wide[i] = narrow[i];
      std::memcpy(out, wide, sizeof wide);
      text += kBlock;
      out += kBlock;
    }
    // On to the end of the block that isn't plain ASCII, or of the text.
    const char* const blockEnd = end - text < 16 ? end : text + kBlock;
    while (text < blockEnd) {
      if (static_cast<signed char>(*text) >= 0)
        *out++ = static_cast<unsigned char>(*text++);
      else
        text = DecodeCharacter(text, end, out);
    }
  }
  return out;
}

bool IsAsciiCompatible(QTextCodec& codec) {
  const QByteArray ascii("<?xml version=\"1.0\" encoding='A-z_09'?>\r\n\t&#[]%;/!");
  return codec.toUnicode(ascii) == QLatin1String(ascii);
}

/// Fills expat's table with the characters of a codec that has one byte for each of them. False
/// for another codec.
bool FillTable(QTextCodec& codec, int* map) {
  for (int i = 0; i < 256; ++i) {
    const char byte = static_cast<char>(i);
    QTextCodec::ConverterState state;
    const QString text = codec.toUnicode(&byte, 1, &state);
    if (text.size() != 1 || state.remainingChars != 0)
      return false;
    // A byte without a meaning becomes what it would be in Latin-1, rather than the end of the
    // parse.
    const ushort unit = text[0].unicode();
    map[i] = unit == QChar::ReplacementCharacter || (i > 0 && unit == 0) ? i : unit;
  }
  return true;
}

bool IsUtf8(const QTextCodec& codec) { return codec.mibEnum() == 106; }

} // namespace

/// expat's callbacks. Nothing may leave them but by returning: where memory runs out, the parse
/// stops, and the failure is thrown on the other side of expat.
struct ExpatParser::Callbacks {
  template <class Act> static void Run(void* self, Act act) noexcept {
    ExpatParser& parser = *static_cast<ExpatParser*>(self);
    if (parser.stopped_)
      return;
    try {
      act(parser);
    } catch (const std::bad_alloc&) {
      parser.outOfMemory_ = true;
      parser.Stop();
    }
  }
  static void Start(void* self, const XML_Char* name, const XML_Char** attributes) noexcept {
    Run(self, [=](ExpatParser& parser) { parser.StartElement(name, attributes); });
  }
  static void End(void* self, const XML_Char* name) noexcept {
    Run(self, [=](ExpatParser& parser) { parser.EndElement(name); });
  }
  static void Characters(void* self, const XML_Char* text, int length) noexcept {
    Run(self, [=](ExpatParser& parser) { parser.Characters(text, length); });
  }
  static void StartCdata(void* self) noexcept {
    Run(self, [](ExpatParser& parser) { parser.handler_.StartCdata(); });
  }
  static void EndCdata(void* self) noexcept {
    Run(self, [](ExpatParser& parser) { parser.handler_.EndCdata(); });
  }
  static void SkippedEntity(void* self, const XML_Char* name, int isParameter) noexcept {
    Run(self, [=](ExpatParser& parser) {
      if (isParameter == 0)
        parser.handler_.ReportSkippedEntity(QString::fromUtf8(name));
    });
  }
  static int UnknownEncoding(void* self, const XML_Char* name, XML_Encoding* info) noexcept {
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    bool known = false;
    Run(self, [&](ExpatParser& parser) {
      known = parser.ProvideEncoding(QString::fromUtf8(name), info->map);
    });
    return known ? XML_STATUS_OK : XML_STATUS_ERROR;
  }
};

ExpatParser::ExpatParser(ExpatHandler& handler, const char* encoding, QTextCodec* codec)
    : handler_(handler), parser_(XML_ParserCreate(codec ? "UTF-8" : encoding)), codec_(codec),
      isEncodingGiven_(codec || encoding) {
  if (!parser_)
    return;
  if (codec_ && IsUtf8(*codec_))
    codec_ = nullptr; // expat itself is stricter.
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, Callbacks::Start, Callbacks::End);
  XML_SetCharacterDataHandler(parser_, Callbacks::Characters);
  XML_SetCdataSectionHandler(parser_, Callbacks::StartCdata, Callbacks::EndCdata);
  XML_SetSkippedEntityHandler(parser_, Callbacks::SkippedEntity);
  XML_SetUnknownEncodingHandler(parser_, Callbacks::UnknownEncoding, this);
}

ExpatParser::~ExpatParser() {
  if (parser_)
    XML_ParserFree(parser_);
}

ExpatParser::Result ExpatParser::Parse(XmlSource& source) {
  if (!parser_)
    return kFailed;
  const std::unique_ptr<QTextDecoder> decoder(codec_ ? codec_->makeDecoder() : nullptr);
  QByteArray piece;
  int pieceSize = kPieceSize;
  for (bool done = false; !done; pieceSize = GetPieceSize(pieceSize)) {
    if (handler_.CheckCancelled())
      return kFailed;
    if (decoder)
      piece.resize(pieceSize);
    void* const buffer = decoder ? piece.data() : XML_GetBuffer(parser_, pieceSize);
    if (!buffer)
      return kFailed;
    const int size = source.Read(static_cast<char*>(buffer), pieceSize);
    if (size < 0)
      return kReadFailed;
    if (byteCount_ == 0)
      ObeyByteOrderMark(static_cast<const char*>(buffer), size);
    byteCount_ += size;
    done = size == 0;
    XML_Status status;
    if (decoder) {
      const QByteArray utf8 = decoder->toUnicode(piece.constData(), size).toUtf8();
      decodingFailed_ = decodingFailed_ || decoder->hasFailure();
      status = decodingFailed_
                   ? XML_STATUS_ERROR
                   : XML_Parse(parser_, utf8.constData(), static_cast<int>(utf8.size()), done);
    } else {
      status = XML_ParseBuffer(parser_, size, done);
    }
    if (outOfMemory_)
      throw std::bad_alloc();
    if (status != XML_STATUS_OK)
      return foundCodec_ && GetErrorCode() == XML_ERROR_UNKNOWN_ENCODING ? kOtherCodec : kFailed;
  }
  return kParsed;
}

/// expat scans a token anew with each piece until it's complete. So the pieces of one that is long
/// grow with it.
int ExpatParser::GetPieceSize(int former) {
  const qint64 tokenStart = XML_GetCurrentByteIndex(parser_);
  const bool goesOn = tokenStart == tokenStart_;
  tokenStart_ = tokenStart;
  return goesOn ? std::min(former * 2, kMaxPieceSize) : kPieceSize;
}

/// The mark says how the bytes are to be read, whatever the document declares.
void ExpatParser::ObeyByteOrderMark(const char* bytes, int size) {
  if (isEncodingGiven_)
    return;
  const QByteArray start = QByteArray::fromRawData(bytes, size);
  const bool isUtf32 = start.startsWith(QByteArray("\xFF\xFE\0\0", 4));
  if (start.startsWith("\xEF\xBB\xBF"))
    XML_SetEncoding(parser_, "UTF-8");
  else if ((start.startsWith("\xFF\xFE") && !isUtf32) || start.startsWith("\xFE\xFF"))
    XML_SetEncoding(parser_, "UTF-16");
}

void ExpatParser::Stop() {
  if (!stopped_)
    XML_StopParser(parser_, XML_FALSE);
  stopped_ = true;
}

int ExpatParser::GetErrorCode() const {
  if (!parser_)
    return XML_ERROR_NO_MEMORY;
  return decodingFailed_ ? XML_ERROR_INVALID_TOKEN : XML_GetErrorCode(parser_);
}

QString ExpatParser::GetErrorString() const {
  return QString::fromLatin1(XML_ErrorString(static_cast<XML_Error>(GetErrorCode())));
}

qint64 ExpatParser::GetLine() const {
  return parser_ ? static_cast<qint64>(XML_GetCurrentLineNumber(parser_)) : 0;
}

qint64 ExpatParser::GetColumn() const {
  return parser_ ? static_cast<qint64>(XML_GetCurrentColumnNumber(parser_)) : 0;
}

bool ExpatParser::ProvideEncoding(const QString& name, int* map) {
  QTextCodec* const codec = QTextCodec::codecForName(name.toLatin1());
  if (!codec || !IsAsciiCompatible(*codec))
    return false;
  if (!IsUtf8(*codec) && FillTable(*codec, map))
    return true;
  foundCodec_ = codec;
  return false;
}

ushort* ExpatParser::GetBuffer(std::size_t size) {
  if (buffer_.size() < size)
    buffer_.resize(std::max(size, buffer_.size() * 2));
  return buffer_.data();
}

bool ExpatParser::CheckAttributes(std::size_t bytes) {
  if (bytes + lengths_.size() / 2 * kBytesPerAttribute > kMaxAttributeBytes) {
    handler_.RefuseAttributes();
    return false;
  }
  // Those that come from the document type stand in the document once, however often they're given.
  const std::size_t given = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_));
  qint64 repeated = 0;
  for (std::size_t i = given + 1; i < lengths_.size(); ++i)
    repeated += static_cast<qint64>(lengths_[i]);
  return repeated == 0 || handler_.CountRepeated(repeated);
}

void ExpatParser::StartElement(const char* name, const char** attributes) {
  const QString* const known = names_.Find(name);
  open_.push_back(known);
  lengths_.clear();
  lengths_.push_back(known ? 0 : std::strlen(name));
  std::size_t total = lengths_.back();
  for (const char** attribute = attributes; *attribute; ++attribute) {
    lengths_.push_back(std::strlen(*attribute));
    total += lengths_.back();
  }
  if ((*attributes || total > kMaxAttributeBytes) && !CheckAttributes(total))
    return;

  ushort* out = GetBuffer(total + lengths_.size());
  const ushort* const wideName = out;
  out = Widen(name, lengths_[0], out);
  *out++ = 0;
  attributes_.clear();
  for (std::size_t i = 1; i < lengths_.size(); ++i) {
    attributes_.push_back(out);
    out = Widen(attributes[i - 1], lengths_[i], out);
    *out++ = 0;
  }
  attributes_.push_back(nullptr);
  bool goodNames = known || XmlNames::IsName(wideName);
  for (std::size_t i = 0; attributes_[i]; i += 2)
    goodNames = goodNames && XmlNames::IsName(attributes_[i]);
  if (!goodNames) {
    handler_.RefuseName();
    return;
  }
  handler_.knownName_ = known;
  handler_.StartElement(known ? known->utf16() : wideName, attributes_.data());
}

void ExpatParser::EndElement(const char* name) {
  const QString* const known = open_.back();
  open_.pop_back();
  if (known) {
    handler_.EndElement(known->utf16());
    return;
  }
  const std::size_t length = std::strlen(name);
  ushort* const buffer = GetBuffer(length + 1);
  *Widen(name, length, buffer) = 0;
  handler_.EndElement(buffer);
}

void ExpatParser::Characters(const char* text, int length) {
  if (ushort* const place = handler_.GetPlaceForText(length)) {
    handler_.EndPlaceForText(Widen(text, static_cast<std::size_t>(length), place));
    return;
  }
  ushort* const buffer = GetBuffer(static_cast<std::size_t>(length));
  const ushort* const end = Widen(text, static_cast<std::size_t>(length), buffer);
  handler_.characters(buffer, static_cast<int>(end - buffer));
}

} // namespace vorrel::kestan
