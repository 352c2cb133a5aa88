#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

/// What can be told of a document while it is read.
///
/// Programs may rely on the texts of the codes: those that are there stay as they are, and others
/// may come.
enum class ReportCode {
  // The document can't be read.
  kUnreadable,
  kMalformedXml,
  kBadRoot,
  kForeignRoot, ///< The root is in a namespace that nothing is known of.
  kTooNew,
  kLimit,
  kRefused, ///< A class doesn't allow what the document says.
  kCancelled,

  // Errors that the reader goes on after: the content is kept as text.
  kUnknownElement,
  kUnknownType,
  kUnexpectedType,
  kUnknownAttribute,
  kAttributeAsElement,
  kAbstractType,
  kOutOfRange,
  kUnknownEnumeration,
  kUnsupportedData,
  kSecurityViolation,
  kFailedUpdate, ///< An element of an update that can't be applied.

  // What reading changes, passes over or can't make sense of.
  kBadNumber,
  kBadBoolean,
  kBadColor,
  kBadTime,
  kBadUnit,
  kUnknownWord,
  kLimitedValue, ///< A value that was brought to a bound.
  kShortTuple,
  kLongTuple,
  kTrailingComma,
  kStrayText,
  kExtraPosition,
  kSecondValue, ///< Of several values or children for one place the last one counts.
  kDuplicateId,
  kDanglingReference,
  kSkippedEntity,

  // Nothing is wrong with it.
  kForeignElement,
};

enum class Severity {
  kError,   ///< The document can't be read, or part of it isn't understood.
  kWarning, ///< It's understood, but not as it stands there.
  kRemark,
};

/// The name of a code, such as "unknown-element".
KESTAN_EXPORT const char* GetText(ReportCode code);
KESTAN_EXPORT Severity GetSeverity(ReportCode code);
/// "error", "warning" or "remark".
KESTAN_EXPORT const char* GetText(Severity severity);

} // namespace vorrel::kestan
