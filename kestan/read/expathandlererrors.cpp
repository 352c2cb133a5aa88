// How a parse deals with errors: those of the document, by grade, and the limits of the reader.

#include "kestan/core/field.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/tr.h"
#include "kestan/read/charbuf.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/expatparser.h"
#include "kestan/read/loadobserver.h"
#include "kestan/read/taginfo.h"

#include <atomic>

namespace vorrel::kestan {

namespace {

/// Cost of lookups beyond the usual that a document of any length may have; each byte adds one.
constexpr std::uint64_t kFreeLookupCost = std::uint64_t(32) << 20;

std::atomic<int> s_max_element_depth{kMaxElementDepth};

IntSetting& ErrorHandling() { return KestanOptionsContext::kestanOptions.kmlErrorHandling; }

} // namespace

IErrorHandler* ExpatHandler::default_error_handler_ = nullptr;

IErrorHandler::~IErrorHandler() = default;

bool IErrorHandler::WantsFindings() const { return false; }

void IErrorHandler::OnFinding(const ParseReport&) {}

void ExpatHandler::SetDefaultErrorHandler(IErrorHandler* handler) {
  if (handler == default_error_handler_)
    return;
  if (handler)
    handler->ref();
  IErrorHandler* const former = default_error_handler_;
  default_error_handler_ = handler;
  if (former)
    former->unref();
}

void ExpatHandler::SetMaxElementDepth(int depth) {
  s_max_element_depth = depth < 1 ? kMaxElementDepth : depth;
}

int ExpatHandler::GetMaxElementDepth() { return s_max_element_depth; }

bool ExpatHandler::IgnoresErrors() const {
  return ignoreErrors_ || discardUnknown_ || ErrorHandling().Get() == 0;
}

IErrorHandler* ExpatHandler::GetErrorHandler() const {
  return errorHandler_ ? errorHandler_.get() : default_error_handler_;
}

bool ExpatHandler::HandleError(const QString& message, HandleErrorHow how, ReportCode code) {
  if (how == kFinding) {
    SendFinding(MakeReport(message, code));
    return true;
  }
  if (how == kErrorRecoverable && (ignoreErrors_ || discardUnknown_))
    return true;
  const int handling = how == kErrorFatal ? 2 : ErrorHandling().Get();
  if (handling == 0)
    return true;
  if (handling < 0 || handling > 2) {
    discardUnknown_ = true;
    return true;
  }
  const QString fullText = tr("Error while parsing file \"%1\" at line %2, column %3:\n\n%4",
                              "Error message shown when KML file cannot be parsed")
                               .arg(url_, QString::number(GetLine()),
                                    QString::number(parser_ ? parser_->GetColumn() : 0), message) +
                           QLatin1String("\n\n");
  if (handling == 2) {
    Fail(fullText, message, code);
    return false;
  }
  return Report(fullText, message, code);
}

qint64 ExpatHandler::GetLine() const { return parser_ ? firstLine_ - 1 + parser_->GetLine() : 0; }

QString ExpatHandler::GetElementPath() const {
  QString path;
  for (const TagInfo& tag : tagStack_) {
    path += (path.isEmpty() ? QString() : QStringLiteral("/")) + tag.object->getType();
    if (tag.field)
      path += QLatin1Char('/') + tag.field->GetName();
  }
  return path;
}

ParseReport ExpatHandler::MakeReport(const QString& message, ReportCode code) const {
  ParseReport report;
  report.code = code;
  report.line = GetLine();
  report.column = parser_ ? parser_->GetColumn() + 1 : 0;
  report.path = GetElementPath();
  report.text = message;
  return report;
}

bool ExpatHandler::Report(const QString& fullText, const QString& message, ReportCode code) {
  if (HasBeenTold())
    return true;
  ErrorReport report;
  static_cast<ParseReport&>(report) = MakeReport(message, code);
  report.message = fullText;
  if (IErrorHandler* const handler = GetErrorHandler()) {
    handler->OnParseError(report);
  } else {
    report.action = ErrorReport::kActionIgnoreRest;
    report.sticky = true;
  }
  if (report.action == ErrorReport::kActionIgnoreRest)
    ignoreErrors_ = true;
  if (report.action == ErrorReport::kActionAbort) {
    Fail(fullText, message, code);
    return false;
  }
  if (report.sticky)
    ErrorHandling().Set(0);
  return true;
}

bool ExpatHandler::HandleParseResult(FromStringResult result, const QString& text) {
  bool goOn = true;
  switch (result) {
  case FromStringResult::kOk:
    break;
  case FromStringResult::kOutOfRange:
    goOn = HandleRecoverable(ReportCode::kOutOfRange, [&] {
      return tr("Value out of range (%1).",
                "Error message shown when parsing a kml fileand a bounded value is out of "
                "allowable range. VALUE_1 is the value which is out of range.")
          .arg(text);
    });
    break;
  case FromStringResult::kUnknownEnumeration:
    goOn = HandleRecoverable(ReportCode::kUnknownEnumeration, [&] {
      return tr("Unknown enumeration (%1).",
                "Error message shown when parsing a kml file and an enumeration is not "
                "recognized. VALUE_1 is the unknown enumeration.")
          .arg(text);
    });
    break;
  case FromStringResult::kSecurityViolation:
    goOn = HandleRecoverable(ReportCode::kSecurityViolation, [] {
      return tr("<Update> Security Violation!",
                "Error message shown when a KML Update tag cannot be applied for security "
                "reasons");
    });
    break;
  default:
    goOn = HandleRecoverable(ReportCode::kUnsupportedData, [&] {
      return tr("Unsupported data in kml object (%1).",
                "Error message shown when parsing a kml file fails because the feature is not "
                "yet implemented. VALUE_1 is the unknown data.")
          .arg(text);
    });
  }
  CheckLookupCost();
  return CheckFatalText() && goOn && !fatal_;
}

bool ExpatHandler::CheckFatalText() {
  if (threadContext_->fatalText.isEmpty())
    return true;
  FatalError(threadContext_->fatalText);
  return false;
}

void ExpatHandler::RefuseRoot() {
  foreignNamespace_ = GetForeignUri(GetTagName());
  HandleError(tr("File has missing or bad root element",
                 "Error message shown when parsing a KML file that is not correctly "
                 "structured."),
              kErrorFatal,
              foreignNamespace_.isEmpty() ? ReportCode::kBadRoot : ReportCode::kForeignRoot);
}

void ExpatHandler::FatalError(const QString& text, ReportCode code) { Fail(text, text, code); }

void ExpatHandler::FailToRead() {
  FatalError(tr("Could not open file \"%1\"",
                "Error message shown when a KML file cannot be read. VAL_1 is the location of the "
                "file.")
                 .arg(url_),
             ReportCode::kUnreadable);
}

void ExpatHandler::Fail(const QString& text, const QString& bareText, ReportCode code) {
  fatal_ = true;
  errorCode_ = code;
  error_ = text;
  bareError_ = bareText;
  errorLine_ = GetLine();
  errorColumn_ = parser_ ? parser_->GetColumn() + 1 : 0;
  if (parser_)
    parser_->Stop();
}

void ExpatHandler::ForgetFailure() {
  fatal_ = false;
  error_ = QString();
  bareError_ = QString();
  foreignNamespace_ = QString();
  errorLine_ = 0;
  errorColumn_ = 0;
}

void ExpatHandler::RefuseAttributes() {
  HandleError(tr("The attributes of an element have more than %1 bytes",
                 "Error message shown when a KML file holds attributes that are too long. VAL_1 is "
                 "the greatest possible length.")
                  .arg(ExpatParser::kMaxAttributeBytes),
              kErrorFatal, ReportCode::kLimit);
}

void ExpatHandler::RefuseName() {
  HandleError(tr("A name has a character that is no letter in UTF-8",
                 "Error message shown when an element or attribute of a KML file has a name that "
                 "can't be written."),
              kErrorFatal, ReportCode::kMalformedXml);
}

void ExpatHandler::ReportSkippedEntity(const QString& name) {
  ReportFinding(ReportCode::kSkippedEntity, [&] {
    return tr("The entity \"%1\" isn't declared here and is left out",
              "Message shown when a KML file uses an entity that is declared in another file, "
              "which isn't read. VAL_1 is the name of the entity.")
        .arg(name);
  });
}

bool ExpatHandler::CheckTextLength() {
  if (!text_->IsTooLong() || fatal_)
    return !fatal_;
  return HandleError(tr("The text of an element has more than %1 characters",
                        "Error message shown when a KML file holds a text that is too long. VAL_1 "
                        "is the greatest possible length.")
                         .arg(CharBuf::kMaxSize),
                     kErrorFatal, ReportCode::kLimit);
}

bool ExpatHandler::CountRepeated(qint64 bytes) {
  const qint64 documentBytes = parser_ ? parser_->GetByteCount() : 0;
  if (fatal_)
    return false;
  if (repetition_.HasRoomFor(bytes, documentBytes)) {
    repetition_.Add(bytes);
    return true;
  }
  return HandleError(tr("Too much text that stands in many places: namespaces around unknown "
                        "content, or default attributes",
                        "Error message shown when a KML file was made so that a long text of it "
                        "would be repeated for each element."),
                     kErrorFatal, ReportCode::kLimit);
}

void ExpatHandler::FailForMemory() {
  // First what was read makes room, also for the message.
  while (!tagStack_.empty())
    tagStack_.pop_back();
  root_.reset();
  text_->free();
  HandleError(tr("There is not enough memory for the document",
                 "Error message shown when a KML file can't be read for lack of memory."),
              kErrorFatal, ReportCode::kLimit);
}

void ExpatHandler::CheckLookupCost() {
  const std::uint64_t steps = LoadObserver::GetExcessSteps(*threadContext_);
  if (steps <= formerExcessSteps_ + kFreeLookupCost || fatal_)
    return;
  const std::uint64_t bytes = parser_ ? static_cast<std::uint64_t>(parser_->GetByteCount()) : 0;
  if (steps <= formerExcessSteps_ + kFreeLookupCost + bytes)
    return;
  HandleError(tr("Too many ids that have the same hash value",
                 "Error message shown when the ids in a KML file were chosen so that finding them "
                 "would take too long."),
              kErrorFatal, ReportCode::kLimit);
}

bool ExpatHandler::CheckCancelled() {
  if (!IsCancelled())
    return false;
  FatalError(tr("Reading the document was cancelled",
                "Error message shown when a KML file isn't read to its end because the program no "
                "longer wants it."),
             ReportCode::kCancelled);
  return true;
}

bool ExpatHandler::CheckDepth() {
  if (depth_ + skipDepth_ < GetMaxElementDepth())
    return true;
  return HandleError(tr("Elements are nested more than %1 levels deep",
                        "Error message shown when a KML file is nested too deeply. VAL_1 is the "
                        "greatest possible depth.")
                         .arg(GetMaxElementDepth()),
                     kErrorFatal, ReportCode::kLimit);
}

} // namespace vorrel::kestan
