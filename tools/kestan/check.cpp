#include "kestan/core/kestanoptions.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/output.h"

#include <cstdio>

using namespace vorrel::kestan;

namespace tool {

namespace {

void PrintError(const QString& line) { std::fprintf(stderr, "%s\n", line.toUtf8().constData()); }

/// Prints each error as it comes, and lets the parse go on.
class Reporter final : public IErrorHandler {
public:
  explicit Reporter(const QString& file) : file_(file) {}

  void OnParseError(ErrorReport& report) override {
    PrintError(FormatError(file_, report.line, report.column, report.text));
    ++count_;
  }
  int GetCount() const { return count_; }

private:
  QString file_;
  int count_ = 0;
};

/// True when there's nothing to report. `printed` becomes false when output fails.
bool CheckFile(const QString& file, bool& printed) {
  const vorrel::RefPtr<Reporter> reporter(new Reporter(file));
  const Document document = ReadDocument(file, reporter.get());
  const int recoverable = reporter->GetCount();
  QString summary = QStringLiteral("fine");
  if (!document.root) {
    PrintError(document.error);
    summary = QStringLiteral("can't be read");
  }
  if (recoverable > 0) {
    summary = document.root ? QString() : summary + QStringLiteral(", ");
    summary += QStringLiteral("recoverable errors: %1").arg(recoverable);
  }
  printed = Print(QStringLiteral("%1: %2\n").arg(file, summary).toUtf8());
  return document.root && recoverable == 0;
}

} // namespace

int Check(const Arguments& arguments) {
  // The setting that sends recoverable errors to the handler.
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  int status = kFine;
  for (const QString& file : arguments.operands) {
    bool printed = true;
    if (!CheckFile(file, printed)) {
      status = kFindings;
    }
    if (!printed) {
      return kNoOutput;
    }
  }
  return status;
}

} // namespace tool
