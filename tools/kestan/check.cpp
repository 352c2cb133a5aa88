#include "kestan/core/kestanoptions.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/json.h"
#include "tools/kestan/output.h"

#include <array>

using namespace vorrel::kestan;

namespace tool {

namespace {

/// Prints what is told of one document as it comes, and lets the parse go on.
class Reporter final : public IErrorHandler {
public:
  Reporter(const QString& file, bool json, Output& output)
      : file_(file), json_(json), output_(output) {}

  void OnParseError(ErrorReport& report) override { Add(report); }
  bool WantsFindings() const override { return true; }
  void OnFinding(const ParseReport& finding) override { Add(finding); }

  void Add(const ParseReport& report) {
    const Severity severity = GetSeverity(report.code);
    ++counts_[static_cast<std::size_t>(severity)];
    if (json_)
      output_.Write((GetTotal() > 1 ? ",\n" : "\n") + ToJson(report, severity));
    else
      PrintLine(ToText(report, severity));
  }
  int GetCount(Severity severity) const { return counts_[static_cast<std::size_t>(severity)]; }
  int GetTotal() const { return counts_[0] + counts_[1] + counts_[2]; }

private:
  QString ToText(const ParseReport& report, Severity severity) const {
    return QStringLiteral("%1: %2: %3 [%4]")
        .arg(FormatPlace(file_, report.line, report.column), QLatin1String(GetText(severity)),
             report.text.simplified(), QLatin1String(GetText(report.code)));
  }
  static QByteArray ToJson(const ParseReport& report, Severity severity) {
    return JsonObject()
        .Add("severity", QByteArray(JsonText(QLatin1String(GetText(severity)))))
        .Add("code", QByteArray(JsonText(QLatin1String(GetText(report.code)))))
        .Add("line", QByteArray::number(report.line))
        .Add("column", QByteArray::number(report.column))
        .Add("path", report.path)
        .Add("message", report.text)
        .Get();
  }

  QString file_;
  bool json_;
  Output& output_;
  std::array<int, 3> counts_{};
};

QString Summarize(const Reporter& reporter, bool isRead) {
  struct Part {
    Severity severity;
    const char* text;
  };
  static constexpr Part parts[] = {{Severity::kError, "errors: %1"},
                                   {Severity::kWarning, "warnings: %1"},
                                   {Severity::kRemark, "remarks: %1"}};
  QStringList words;
  if (!isRead) {
    words += QStringLiteral("can't be read");
  } else if (reporter.GetCount(Severity::kError) + reporter.GetCount(Severity::kWarning) == 0) {
    words += QStringLiteral("fine");
  }
  for (const Part& part : parts) {
    if (const int count = reporter.GetCount(part.severity)) {
      words += QString(QLatin1String(part.text)).arg(count);
    }
  }
  return words.join(QLatin1String(", "));
}

/// True when there's nothing to mend.
bool CheckFile(const QString& file, bool json, Output& output) {
  const vorrel::RefPtr<Reporter> reporter(new Reporter(file, json, output));
  if (json) {
    output.Write("{\"file\":" + JsonText(file) + ",\"reports\":[");
  }
  const Document document = ReadDocument(file, QString(), reporter.get());
  if (!document.root) {
    reporter->Add(document.error);
  }
  if (json) {
    output.Write(QByteArray("],\"readable\":") + (document.root ? "true}" : "false}"));
  } else {
    const QString summary = Summarize(*reporter, document.root.get() != nullptr);
    output.Write(QStringLiteral("%1: %2\n").arg(Harmless(file), summary).toUtf8());
    output.Flush();
  }
  return reporter->GetTotal() == reporter->GetCount(Severity::kRemark);
}

} // namespace

int Check(const Arguments& arguments) {
  // The setting that sends recoverable errors to the handler.
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  int status = kFine;
  Output output;
  output.Write(arguments.json ? "{\"files\":[\n" : "");
  const char* separator = "";
  for (const QString& file : arguments.operands) {
    output.Write(arguments.json ? separator : "");
    separator = ",\n";
    if (!CheckFile(file, arguments.json, output)) {
      status = kFindings;
    }
    if (output.HasFailed()) {
      break;
    }
  }
  output.Write(arguments.json ? "\n]}\n" : "");
  return output.Finish(status);
}

} // namespace tool
