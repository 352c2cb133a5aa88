#include "kestan/feature/abstractfeature.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/origin.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"
#include "tools/kestan/properties.h"
#include "tools/kestan/walk.h"

#include <QSet>

#include <utility>

using namespace vorrel::kestan;

namespace tool {

namespace {

/// Writes features and their looks.
class Printer {
public:
  explicit Printer(bool json) : json_(json) { Write(json ? "{\"features\":[" : ""); }

  /// False when output fails.
  bool Add(const AbstractFeature& feature) {
    const bool isFirst = std::exchange(isFirst_, false);
    return json_ ? Write((isFirst ? "\n" : ",\n") + ToJson(feature)) : Write(ToText(feature));
  }
  int Finish(int status) {
    Write(json_ ? "\n]}\n" : "");
    return output_.Finish(status);
  }

private:
  bool Write(const QByteArray& bytes) { return output_.Write(bytes); }

  QByteArray ToText(const AbstractFeature& feature) {
    const QString normal = LookToText(feature, kStyleNormal);
    const QString highlight = LookToText(feature, kStyleHighlight);
    const QString text = GetTitle(feature) + QStringLiteral("\n  normal: ") + normal +
                         QStringLiteral("  highlight: ") +
                         (highlight == normal ? QStringLiteral("as normal\n") : highlight);
    return text.toUtf8();
  }

  QString LookToText(const AbstractFeature& feature, int mode) {
    const StyleSources sources(feature, mode);
    QStringList words;
    for (const Origin& origin : GetOrigins(feature, sources)) {
      words += origin.ToText();
    }
    QString text = words.join(QStringLiteral(" over ")) + QLatin1Char('\n');
    for (const Property& property : lister_.List(sources)) {
      const QString& value = property.value;
      text += QStringLiteral("    ") + property.name + QStringLiteral(" = ") +
              (value.isNull() ? QStringLiteral("none") : Printable(value)) + QStringLiteral(" (") +
              (property.source < 0 ? QStringLiteral("default")
                                   : words[static_cast<int>(property.source)]) +
              QStringLiteral(")\n");
    }
    return text;
  }

  QByteArray ToJson(const AbstractFeature& feature) {
    return JsonObject()
        .Add("class", feature.getType())
        .Add("id", feature.GetId())
        .Add("name", feature.GetName())
        .Add("styleUrl", feature.GetStyleUrl())
        .Add("normal", LookToJson(feature, kStyleNormal))
        .Add("highlight", LookToJson(feature, kStyleHighlight))
        .Get();
  }

  QByteArray LookToJson(const AbstractFeature& feature, int mode) {
    const StyleSources sources(feature, mode);
    const std::vector<Origin> origins = GetOrigins(feature, sources);
    QByteArray list;
    for (const Origin& origin : origins) {
      list += (list.isEmpty() ? "" : ",") + origin.ToJson().Get();
    }
    static const Origin byDefault{QStringLiteral("default"), QString(), QString()};
    JsonObject properties;
    for (const Property& property : lister_.List(sources)) {
      const QString& value = property.value;
      JsonObject entry =
          (property.source < 0 ? byDefault : origins[static_cast<std::size_t>(property.source)])
              .ToJson();
      entry.Add("value", value.isNull() ? QByteArray("null") : JsonText(value));
      properties.Add(JsonText(property.name), entry.Get());
    }
    return JsonObject().Add("sources", '[' + list + ']').Add("properties", properties.Get()).Get();
  }

  const bool json_;
  bool isFirst_ = true;
  PropertyLister lister_;
  Output output_;
};

/// Prints all features, or those of which the id is wanted, and takes what it finds out of
/// `missing`. Answers the exit status.
int PrintFeatures(const SchemaObject& root, bool json, const QSet<QString>& wanted,
                  QSet<QString>& missing) {
  const Progress progress("Resolving styles", Progress::kAsItGoes);
  Printer printer(json);
  Walk walk(root);
  while (const SchemaObject* object = walk.Next()) {
    const bool isWanted = wanted.isEmpty() || wanted.contains(object->GetId());
    if (!isWanted || !object->isOfType(AbstractFeature::GetClassSchema())) {
      continue;
    }
    missing.remove(object->GetId());
    if (!printer.Add(static_cast<const AbstractFeature&>(*object))) {
      break;
    }
  }
  return printer.Finish(missing.isEmpty() ? kFine : kFindings);
}

} // namespace

int ShowStyles(const Arguments& arguments) {
  const QString& file = arguments.GetFile();
  const Document document = ReadDocument(file);
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  QStringList ids = arguments.operands.mid(1);
  ids.removeDuplicates();
  const QSet<QString> wanted(ids.begin(), ids.end());
  QSet<QString> missing = wanted;
  const int status = PrintFeatures(*document.root, arguments.json, wanted, missing);
  for (const QString& id : ids) {
    if (status != kNoOutput && missing.contains(id)) {
      Complain(QStringLiteral("%1: no feature has the id \"%2\"").arg(file, id));
    }
  }
  return status;
}

} // namespace tool
