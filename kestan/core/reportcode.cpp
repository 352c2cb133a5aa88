#include "kestan/core/reportcode.h"

#include <QtGlobal>

#include <iterator>

namespace vorrel::kestan {

namespace {

struct Entry {
  ReportCode code;
  const char* text;
  Severity severity;
};

// In the order of the codes.
constexpr Entry kEntries[] = {
    {ReportCode::kUnreadable, "unreadable", Severity::kError},
    {ReportCode::kMalformedXml, "malformed-xml", Severity::kError},
    {ReportCode::kBadRoot, "bad-root", Severity::kError},
    {ReportCode::kForeignRoot, "foreign-root", Severity::kError},
    {ReportCode::kTooNew, "too-new", Severity::kError},
    {ReportCode::kLimit, "limit", Severity::kError},
    {ReportCode::kRefused, "refused", Severity::kError},
    {ReportCode::kCancelled, "cancelled", Severity::kError},
    {ReportCode::kUnknownElement, "unknown-element", Severity::kError},
    {ReportCode::kUnknownType, "unknown-type", Severity::kError},
    {ReportCode::kUnexpectedType, "unexpected-type", Severity::kError},
    {ReportCode::kUnknownAttribute, "unknown-attribute", Severity::kError},
    {ReportCode::kAttributeAsElement, "attribute-as-element", Severity::kError},
    {ReportCode::kAbstractType, "abstract-type", Severity::kError},
    {ReportCode::kOutOfRange, "out-of-range", Severity::kError},
    {ReportCode::kUnknownEnumeration, "unknown-enumeration", Severity::kError},
    {ReportCode::kUnsupportedData, "unsupported-data", Severity::kError},
    {ReportCode::kSecurityViolation, "security-violation", Severity::kError},
    {ReportCode::kFailedUpdate, "failed-update", Severity::kError},
    {ReportCode::kBadNumber, "bad-number", Severity::kWarning},
    {ReportCode::kBadBoolean, "bad-boolean", Severity::kWarning},
    {ReportCode::kBadColor, "bad-color", Severity::kWarning},
    {ReportCode::kBadTime, "bad-time", Severity::kWarning},
    {ReportCode::kBadUnit, "bad-unit", Severity::kWarning},
    {ReportCode::kUnknownWord, "unknown-word", Severity::kWarning},
    {ReportCode::kLimitedValue, "limited-value", Severity::kWarning},
    {ReportCode::kShortTuple, "short-tuple", Severity::kWarning},
    {ReportCode::kLongTuple, "long-tuple", Severity::kWarning},
    {ReportCode::kTrailingComma, "trailing-comma", Severity::kWarning},
    {ReportCode::kStrayText, "stray-text", Severity::kWarning},
    {ReportCode::kExtraPosition, "extra-position", Severity::kWarning},
    {ReportCode::kSecondValue, "second-value", Severity::kWarning},
    {ReportCode::kDuplicateId, "duplicate-id", Severity::kWarning},
    {ReportCode::kDanglingReference, "dangling-reference", Severity::kWarning},
    {ReportCode::kSkippedEntity, "skipped-entity", Severity::kWarning},
    {ReportCode::kForeignElement, "foreign-element", Severity::kRemark},
};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < std::size(kEntries); ++i) {
    if (kEntries[i].code != static_cast<ReportCode>(i))
      return false;
  }
  return true;
}
static_assert(IsInOrder());

const Entry& GetEntry(ReportCode code) {
  const auto place = static_cast<std::size_t>(code);
  Q_ASSERT(place < std::size(kEntries));
  return kEntries[place];
}

} // namespace

const char* GetText(ReportCode code) { return GetEntry(code).text; }

Severity GetSeverity(ReportCode code) { return GetEntry(code).severity; }

const char* GetText(Severity severity) {
  switch (severity) {
  case Severity::kError:
    return "error";
  case Severity::kWarning:
    return "warning";
  case Severity::kRemark:
    break;
  }
  return "remark";
}

} // namespace vorrel::kestan
