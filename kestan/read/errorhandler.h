#pragma once

#include "kestan/host/export.h"
#include "kestan/host/referent.h"

#include <QString>

namespace vorrel::kestan {

/// One recoverable error of a parse.
struct KESTAN_EXPORT ErrorReport {
  enum Action {
    kActionContinue = 0,
    kActionIgnoreRest = 1, ///< No more reports in this parse.
    kActionAbort = 2,      ///< The parse ends; the error becomes its fatal one.
  };

  QString message;     ///< The full text, for people.
  int action = 0;      ///< An `Action`, for the handler to fill in.
  bool sticky = false; ///< Set by the handler: no reports in later parses either.
  qint64 line = 0;     ///< From 1.
  qint64 column = 0;   ///< From 1.
  QString text;        ///< What is wrong, without file and place.
};

/// Hears of recoverable errors while the setting `kmlErrorHandling` is 1. A client's class; it's
/// called on the thread that parses.
class KESTAN_EXPORT IErrorHandler : public AtomicReferent {
public:
  ~IErrorHandler() override;

  virtual void OnParseError(ErrorReport& report) = 0;
};

} // namespace vorrel::kestan
