#include "kestan/core/kestanoptions.h"
#include "kestan/read/expathandler.h"
#include "kestan/update/update.h"
#include "tools/kestan/changes.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/json.h"
#include "tools/kestan/output.h"

#include <memory>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace tool {

namespace {

/// Prints what can't be applied, with its place in the document of the update.
class Refusals final : public IErrorHandler {
public:
  void SetFile(const QString& file) { file_ = file; }
  bool HasAny() const { return hasAny_; }

  void OnParseError(ErrorReport& report) override {
    hasAny_ = true;
    // Columns are those of the text as it's kept.
    const QString place =
        report.line > 0 ? QStringLiteral("%1:%2").arg(file_).arg(report.line) : file_;
    PrintLine(QStringLiteral("%1: %2: %3 [%4]")
                  .arg(place, QLatin1String(GetText(GetSeverity(report.code))),
                       report.text.simplified(), QLatin1String(GetText(report.code))));
  }

private:
  QString file_;
  bool hasAny_ = false;
};

/// An update and the file that it came from.
struct Source {
  RefPtr<Update> update;
  QString file;
};

/// The updates of all files, in order. False for a file that can't be read.
bool ReadUpdates(const Arguments& arguments, std::vector<Source>& sources) {
  for (const QString& file : arguments.operands.mid(1)) {
    const Document document = ReadDocument(file, arguments.updateBase);
    if (!document.whole) {
      Complain(document.GetErrorLine());
      return false;
    }
    mmvector<SchemaObject*> updates;
    document.whole->FindBySchema(Update::GetClassSchema(), updates);
    for (SchemaObject* update : updates) {
      sources.push_back({RefPtr<Update>(static_cast<Update*>(update)), file});
    }
    if (updates.empty()) {
      Complain(QStringLiteral("%1: the document holds no update").arg(file));
      return false;
    }
  }
  return true;
}

/// Applies the updates one after the other; takes them back from the last to the first.
void ApplyUpdates(const std::vector<Source>& sources, const Arguments& arguments,
                  Refusals& refusals) {
  for (const Source& source : sources) {
    refusals.SetFile(source.file);
    source.update->SetKeepEdits(true);
    source.update->Apply(nullptr, static_cast<float>(arguments.at.value_or(1.0)));
  }
  for (auto source = sources.rbegin(); arguments.undo && source != sources.rend(); ++source) {
    source->update->ApplyEdits(0.0F);
  }
}

QByteArray ToJson(const Change& change) {
  static constexpr const char* kKinds[] = {"set", "created", "deleted"};
  const auto text = [](const QString& value) {
    return value.isNull() ? QByteArray("null") : JsonText(value);
  };
  return JsonObject()
      .Add("change", JsonText(QLatin1String(kKinds[change.kind])))
      .Add("object", change.object)
      .Add("class", change.type)
      .Add("field", text(change.field))
      .Add("old", text(change.former))
      .Add("new", text(change.value))
      .Get();
}

QString ToText(const Change& change) {
  switch (change.kind) {
  case Change::kCreated:
    return QStringLiteral("%1: created, %2").arg(Printable(change.object), change.type);
  case Change::kDeleted:
    return QStringLiteral("%1: deleted, %2").arg(Printable(change.object), change.type);
  default:
    return QStringLiteral("%1 %2: \"%3\" -> \"%4\"")
        .arg(Printable(change.object), change.field, Printable(change.former),
             Printable(change.value));
  }
}

int ShowChanges(const std::vector<Change>& changes, bool json, int status) {
  Output output;
  output.Write(json ? "{\"changes\":[" : "");
  const char* separator = "\n";
  for (const Change& change : changes) {
    output.Write(json ? separator + ToJson(change) : ToText(change).toUtf8() + '\n');
    separator = ",\n";
  }
  output.Write(json ? "\n]}\n" : "");
  return output.Finish(status);
}

} // namespace

int Apply(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.GetFile(), arguments.base);
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  std::vector<Source> sources;
  if (!ReadUpdates(arguments, sources)) {
    return kFindings;
  }

  std::unique_ptr<Changes> changes;
  if (arguments.diff) {
    changes = std::make_unique<Changes>(*document.root);
  }
  // The setting that sends recoverable errors to the handler.
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  const RefPtr<Refusals> refusals(new Refusals);
  ExpatHandler::SetDefaultErrorHandler(refusals.get());
  ApplyUpdates(sources, arguments, *refusals);
  ExpatHandler::SetDefaultErrorHandler(nullptr);

  const int status = refusals->HasAny() ? kFindings : kFine;
  if (changes) {
    return ShowChanges(changes->Find(*document.root), arguments.json, status);
  }
  const int written = WriteDocument(*document.whole, arguments.output, kWriteOwnFilesOnly);
  return written == kFine ? status : written;
}

} // namespace tool
