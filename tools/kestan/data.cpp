// The table of extended data.

#include "kestan/custom/data.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/schema.h"
#include "kestan/custom/customfield.h"
#include "kestan/custom/customschema.h"
#include "kestan/custom/extendeddata.h"
#include "kestan/custom/schemadata.h"
#include "kestan/custom/simpledata.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/geometry.h"
#include "kestan/host/convert.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/json.h"
#include "tools/kestan/output.h"
#include "tools/kestan/walk.h"

#include <QHash>
#include <QLocale>

#include <cmath>
#include <vector>

using namespace vorrel::kestan;

namespace tool {

namespace {

struct Column {
  QString name;
  QString displayName;
  QString typeName; ///< Of the schema; null for plain texts.
  CustomField::Type type = CustomField::kNoType;
};

class Table {
public:
  /// Takes note of what the feature has. A column comes with the first feature that has it.
  void AddColumns(const AbstractFeature& feature);
  const std::vector<Column>& GetColumns() const { return columns_; }
  /// The values of a feature by column; null where it has none.
  std::vector<QString> GetValues(const AbstractFeature& feature) const;

private:
  void Add(const Column& column);

  std::vector<Column> columns_;
  QHash<QString, std::size_t> places_;
};

/// Calls `visit(name, value, displayName, declaration)` for each value; the last is null without a
/// schema.
template <class Visit> void ForEachValue(const AbstractFeature& feature, Visit visit) {
  if (feature.GetSchema().IsCustom()) {
    const auto& schema = static_cast<const CustomSchema&>(feature.GetSchema());
    for (const auto& declaration : schema.GetCustomFields()) {
      const Field* const field = declaration ? declaration->GetField() : nullptr;
      if (!field || field->GetObjSchema() || field->IsArray()) {
        continue;
      }
      const KeptField* const kept = feature.GetKeptField(*field);
      if (kept && !kept->text.isNull()) {
        visit(field->GetName(), kept->text, declaration->GetDisplayName(), declaration.get());
      } else if (!field->IsUndefined(feature)) {
        visit(field->GetName(), field->toString(feature, -1), declaration->GetDisplayName(),
              declaration.get());
      }
    }
  }
  const ExtendedData* const data = feature.GetExtendedData();
  if (!data) {
    return;
  }
  for (const auto& item : data->GetDatas()) {
    if (item) {
      visit(item->GetName(), item->GetValue(), item->GetDisplayName(),
            static_cast<const CustomField*>(nullptr));
    }
  }
  for (const auto& values : data->GetSchemaDatas()) {
    for (const auto& item :
         values ? values->GetSimpleDatas() : vorrel::mmvector<vorrel::RefPtr<SimpleData>>()) {
      if (item) {
        const CustomField* const declaration = item->GetCustomField();
        visit(item->GetName(), item->GetValue(),
              declaration ? declaration->GetDisplayName() : QString(), declaration);
      }
    }
  }
}

void Table::AddColumns(const AbstractFeature& feature) {
  ForEachValue(feature, [this](const QString& name, const QString&, const QString& displayName,
                               const CustomField* declaration) {
    Add(declaration ? Column{name, displayName, declaration->GetTypeName(), declaration->GetType()}
                    : Column{name, displayName, QString()});
  });
}

/// Schemas that don't agree on a type leave texts.
void Table::Add(const Column& column) {
  const auto place = places_.constFind(column.name);
  if (place == places_.constEnd()) {
    places_.insert(column.name, columns_.size());
    columns_.push_back(column);
    return;
  }
  Column& present = columns_[*place];
  if (present.typeName != column.typeName) {
    present.typeName = QString();
    present.type = CustomField::kNoType;
  }
}

std::vector<QString> Table::GetValues(const AbstractFeature& feature) const {
  std::vector<QString> values(columns_.size());
  ForEachValue(feature,
               [&](const QString& name, const QString& value, const QString&, const CustomField*) {
                 QString& text = values[places_.value(name)];
                 if (text.isNull()) { // of a name that comes twice the first one counts
                   text = value.isNull() ? QLatin1String("") : value;
                 }
               });
  return values;
}

/// What every row begins with.
struct Head {
  QString id;
  QString name;
  QString geometry;
  QString longitude;
  QString latitude;
};

constexpr const char* kHeadNames[] = {"id", "name", "geometry", "longitude", "latitude"};

QString NumberText(double number) {
  return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

/// The position is that of a point, and the middle of any other shape.
Head GetHead(const AbstractFeature& feature) {
  Head head{feature.GetId(), feature.GetName(), QString(), QString(), QString()};
  const bool isPlacemark = feature.isOfType(Placemark::GetClassSchema());
  const Geometry* const geometry =
      isPlacemark ? static_cast<const Placemark&>(feature).GetGeometry() : nullptr;
  if (!geometry) {
    return head;
  }
  head.geometry = geometry->getType();
  const auto box = geometry->GetBBox();
  if (!box.IsEmpty()) {
    constexpr double kHalf = 0.5;
    constexpr double kTurn = 360.0;
    const auto middle = vorrel::convert::NormToLLA(
        {(box.low.x + box.high.x) * kHalf, (box.low.y + box.high.y) * kHalf, 0.0});
    head.longitude = NumberText(std::remainder(middle.x, kTurn)); // a box may cross the dateline
    head.latitude = NumberText(middle.y);
  }
  return head;
}

std::vector<QString> ToTexts(const Head& head) {
  return {head.id, head.name, head.geometry, head.longitude, head.latitude};
}

/// One field of a table of comma-separated values, or of a line with tabs.
QString ToField(const QString& text, bool csv) {
  if (!csv) {
    return Printable(text);
  }
  const bool isPlain = !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char(',')) &&
                       !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'));
  return isPlain
             ? text
             : QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QLatin1String("\"\"")) +
                   QLatin1Char('"');
}

QByteArray ToLine(const std::vector<QString>& fields, bool csv) {
  QString line;
  for (const QString& field : fields) {
    line += (line.isEmpty() && &field == &fields.front() ? QString()
                                                         : QString(QLatin1Char(csv ? ',' : '\t'))) +
            ToField(field, csv);
  }
  return line.toUtf8() + (csv ? "\r\n" : "\n");
}

/// A value by its type; a text where it isn't of that.
QByteArray ToJson(const QString& value, CustomField::Type type) {
  if (value.isNull()) {
    return "null";
  }
  const QString word = value.trimmed().toLower();
  if (type == CustomField::kBool &&
      (word == QLatin1String("true") || word == QLatin1String("false") ||
       word == QLatin1String("1") || word == QLatin1String("0"))) {
    return word == QLatin1String("true") || word == QLatin1String("1") ? "true" : "false";
  }
  bool isNumber = false;
  const double number =
      type == CustomField::kNoType ? 0.0 : CustomField::GetValueAsDouble(type, value, &isNumber);
  return isNumber && std::isfinite(number) ? NumberText(number).toLatin1() : JsonText(value);
}

QByteArray ToJson(const Head& head, const std::vector<Column>& columns,
                  const std::vector<QString>& values) {
  JsonObject data;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!values[i].isNull()) {
      data.Add(JsonText(columns[i].name), ToJson(values[i], columns[i].type));
    }
  }
  const auto number = [](const QString& text) {
    return text.isEmpty() ? QByteArray("null") : text.toLatin1();
  };
  return JsonObject()
      .Add("id", head.id)
      .Add("name", head.name)
      .Add("geometry", head.geometry)
      .Add("longitude", number(head.longitude))
      .Add("latitude", number(head.latitude))
      .Add("data", data.Get())
      .Get();
}

QByteArray ToJson(const Column& column) {
  return JsonObject()
      .Add("name", column.name)
      .Add("displayName", column.displayName)
      .Add("type", column.typeName.isNull() ? QByteArray("null") : JsonText(column.typeName))
      .Get();
}

/// Each placemark has a row, and so has any other feature with data.
std::vector<const AbstractFeature*> FindRows(const SchemaObject& root) {
  std::vector<const AbstractFeature*> rows;
  Walk walk(root);
  while (const SchemaObject* object = walk.Next()) {
    const bool isFeature = object->isOfType(AbstractFeature::GetClassSchema());
    const auto* const feature = isFeature ? static_cast<const AbstractFeature*>(object) : nullptr;
    if (feature && (feature->GetExtendedData() || feature->GetSchema().IsCustom() ||
                    feature->isOfType(Placemark::GetClassSchema()))) {
      rows.push_back(feature);
    }
  }
  return rows;
}

int PrintLines(const Table& table, const std::vector<const AbstractFeature*>& rows, bool csv) {
  std::vector<QString> fields;
  for (const char* name : kHeadNames) {
    fields.push_back(QLatin1String(name));
  }
  for (const Column& column : table.GetColumns()) {
    fields.push_back(column.name);
  }
  Output output;
  output.Write(ToLine(fields, csv));
  for (const AbstractFeature* row : rows) {
    fields = ToTexts(GetHead(*row));
    const std::vector<QString> values = table.GetValues(*row);
    fields.insert(fields.end(), values.begin(), values.end());
    output.Write(ToLine(fields, csv));
  }
  return output.Finish(kFine);
}

int PrintJson(const Table& table, const std::vector<const AbstractFeature*>& rows) {
  Output output;
  const char* separator = "\n";
  output.Write("{\"columns\":[");
  for (const Column& column : table.GetColumns()) {
    output.Write(separator + ToJson(column));
    separator = ",\n";
  }
  separator = "\n";
  output.Write("\n],\"rows\":[");
  for (const AbstractFeature* row : rows) {
    output.Write(separator + ToJson(GetHead(*row), table.GetColumns(), table.GetValues(*row)));
    separator = ",\n";
  }
  output.Write("\n]}\n");
  return output.Finish(kFine);
}

} // namespace

int ShowData(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  const std::vector<const AbstractFeature*> rows = FindRows(*document.root);
  Table table;
  for (const AbstractFeature* row : rows) {
    table.AddColumns(*row);
  }
  return arguments.json ? PrintJson(table, rows) : PrintLines(table, rows, arguments.csv);
}

} // namespace tool
