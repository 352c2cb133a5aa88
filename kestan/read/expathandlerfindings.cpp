// What a parse tells of beyond errors, to handlers that ask for it.

#include "kestan/core/objurlfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/textfaults.h"
#include "kestan/host/tr.h"
#include "kestan/read/charbuf.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/expatparser.h"
#include "kestan/read/referencecheck.h"

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

namespace {

constexpr int kLongestExcerpt = 60;

QString Excerpt(const QString& text) {
  const QString line = text.left(2 * kLongestExcerpt).simplified();
  return line.size() <= kLongestExcerpt ? line : line.left(kLongestExcerpt) + QLatin1String("...");
}

/// What is wrong with a text; `%1` stands for the part, `%2` for the value that was made of it.
QString GetPattern(ReportCode code) {
  switch (code) {
  case ReportCode::kBadNumber:
    return tr("\"%1\" is no number", "Message about the text of a KML value.");
  case ReportCode::kBadBoolean:
    return tr("\"%1\" is neither true nor false", "Message about the text of a KML value.");
  case ReportCode::kBadColor:
    return tr("\"%1\" is no color: that has eight hexadecimal digits",
              "Message about the text of a KML value.");
  case ReportCode::kBadTime:
    return tr("\"%1\" is no date or time", "Message about the text of a KML value.");
  case ReportCode::kBadUnit:
    return tr("\"%1\" is no unit", "Message about the text of a KML value.");
  case ReportCode::kUnknownWord:
    return tr("\"%1\" has no meaning here", "Message about the text of a KML value.");
  case ReportCode::kLimitedValue:
    return tr("\"%1\" is beyond the limits and read as %2",
              "Message about the text of a KML value. VAL_2 is the limit.");
  case ReportCode::kShortTuple:
    return tr("\"%1\" has too few numbers", "Message about a position in a KML file.");
  case ReportCode::kLongTuple:
    return tr("\"%1\" has too many numbers", "Message about a position in a KML file.");
  case ReportCode::kTrailingComma:
    return tr("\"%1\" ends with a comma", "Message about a position in a KML file.");
  case ReportCode::kExtraPosition:
    return tr("\"%1\" comes after the one position that has room",
              "Message about a position in a KML file.");
  default:
    return tr("\"%1\" is passed over", "Message about the text of a KML value.");
  }
}

} // namespace

void ExpatHandler::SendFinding(const ParseReport& finding) {
  if (IErrorHandler* const handler = WantsFindings() ? GetErrorHandler() : nullptr;
      handler && !HasBeenTold())
    handler->OnFinding(finding);
}

void ExpatHandler::CheckValue(const SchemaObject& object, const Field& field,
                              const AttributeList* attrs, const QString& text, int textPlace) {
  if (dynamic_cast<const IdField*>(&field))
    NoteId(text);
  else if (dynamic_cast<const ObjUrlFieldBase*>(&field))
    NoteReference(object, text, textPlace);
  TextFaults faults(text);
  field.FindFaults(object, attrs, faults);
  for (const TextFaults::Fault& fault : faults.Get()) {
    const QString value =
        fault.code == ReportCode::kLimitedValue ? field.toString(object, -1) : QString();
    QString message = GetPattern(fault.code);
    message = fault.code == ReportCode::kLimitedValue ? message.arg(Excerpt(fault.part), value)
                                                      : message.arg(Excerpt(fault.part));
    if (fault.count > 1)
      message += tr("; there are %1 of this kind in the text",
                    "Behind a message about the text of a KML value.")
                     .arg(fault.count);
    auto report = MakeReport(message, fault.code);
    if (textPlace >= 0 && fault.begin >= 0)
      MoveToText(textPlace + fault.begin, report);
    SendFinding(report);
  }
}

/// Moves a report from the end tag to a place in the text in front of it.
void ExpatHandler::MoveToText(int place, ParseReport& report) const {
  const auto countColumns = [](const QChar* begin, const QChar* end) {
    return std::count_if(begin, end, [](QChar unit) { return !unit.isLowSurrogate(); });
  };
  const QChar* const begin = text_->constData();
  const QChar* const at = begin + place;
  const QChar* const end = begin + text_->size();
  const auto lines = std::count(at, end, QLatin1Char('\n'));
  if (lines == 0) {
    report.column = std::max<qint64>(report.column - countColumns(at, end), 1);
    return;
  }
  report.line -= lines;
  const QChar* lineStart = at;
  while (lineStart != begin && lineStart[-1] != QLatin1Char('\n'))
    --lineStart;
  // In front of the first line of the text stands the start tag.
  report.column = lineStart == begin ? startColumn_ : countColumns(lineStart, at) + 1;
}

void ExpatHandler::NoteStart() { startColumn_ = parser_ ? parser_->GetColumn() + 1 : 0; }

void ExpatHandler::NoteId(const QString& id) {
  const qint64 former = id.isEmpty() ? 0 : references_->AddId(id, GetLine());
  if (former == 0)
    return;
  ReportFinding(ReportCode::kDuplicateId, [&] {
    return tr("The id \"%1\" is that of another element at line %2",
              "Message about an id that comes twice in a KML file.")
        .arg(Excerpt(id), QString::number(former));
  });
}

void ExpatHandler::NoteReference(const SchemaObject& object, const QString& text, int textPlace) {
  const KmlId target = SchemaObject::MakeAbsoluteId(object.GetBaseUrl(), text);
  if (text.isEmpty() || target.url != object.GetUrl())
    return;
  const QString message =
      tr("\"%1\" leads nowhere: no element has this id", "Message about a reference in a KML file.")
          .arg(Excerpt(text));
  ParseReport report = MakeReport(message, ReportCode::kDanglingReference);
  if (textPlace >= 0)
    MoveToText(textPlace, report);
  references_->AddReference(target.id, std::move(report));
}

void ExpatHandler::ReportDanglingReferences() {
  if (!WantsFindings())
    return;
  for (const ParseReport& report : references_->TakeDangling())
    SendFinding(report);
}

} // namespace vorrel::kestan
