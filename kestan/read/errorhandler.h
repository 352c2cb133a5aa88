#pragma once

#include "kestan/core/reportcode.h"
#include "kestan/host/export.h"
#include "kestan/host/referent.h"

#include <QString>

namespace vorrel::kestan {

/// What is told of one place of a document.
struct KESTAN_EXPORT ParseReport {
  ReportCode code = ReportCode::kUnsupportedData;
  qint64 line = 0;   ///< From 1; 0 for what has no place in the document.
  qint64 column = 0; ///< From 1.
  QString path;      ///< The element around it, by names parted by "/", such as "Folder/Placemark".
  QString text;      ///< What is wrong, without file and place.
};

/// One recoverable error of a parse.
struct KESTAN_EXPORT ErrorReport : ParseReport {
  enum Action {
    kActionContinue = 0,
    kActionIgnoreRest = 1, ///< No more reports in this parse.
    kActionAbort = 2,      ///< The parse ends; the error becomes its fatal one.
  };

  QString message;     ///< The full text, for people.
  int action = 0;      ///< An `Action`, for the handler to fill in.
  bool sticky = false; ///< Set by the handler: no reports in later parses either.
};

/// Hears of recoverable errors while the setting `kmlErrorHandling` is 1. A client's class; it's
/// called on the thread that parses.
class KESTAN_EXPORT IErrorHandler : public AtomicReferent {
public:
  ~IErrorHandler() override;

  virtual void OnParseError(ErrorReport& report) = 0;

  /// True for a handler that wants to hear of findings too: whatever reading changes, passes over
  /// or can't make sense of. Asked once for each parse, as it begins. Nobody looks for findings
  /// otherwise.
  virtual bool WantsFindings() const;
  /// Hears of them, whatever the setting. A finding neither ends a parse nor changes it, and comes
  /// in the order in which the reader notes it, which isn't always that of the document.
  virtual void OnFinding(const ParseReport& finding);
};

} // namespace vorrel::kestan
