#include "log.h"

#include "kestan/core/schema.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/link/networklink.h"

#include <QStringList>

#include <cstdio>

using namespace vorrel;
using namespace vorrel::kestan;

void Print(const QString& line) {
  QString harmless = line;
  for (QChar& c : harmless) {
    if (!c.isPrint() && !c.isSurrogate())
      c = ' ';
  }
  std::printf("%s\n", harmless.toUtf8().constData());
}

QString GetTitle(const SchemaObject& object) {
  QString title = object.getType();
  if (!object.GetId().isEmpty())
    title += " #" + object.GetId();
  const bool isFeature = object.isOfType(AbstractFeature::GetClassSchema());
  const QString name =
      isFeature ? static_cast<const AbstractFeature&>(object).GetName() : QString();
  return name.isEmpty() ? title : title + " \"" + name + '"';
}

QString GetValues(const SchemaObject& object) {
  const RefPtr<SchemaObject> fresh = object.GetSchema().CreateInstance(KmlId(), QString(), nullptr);
  QStringList values;
  for (const Field* field : object.GetSchema().GetSerializedFields()) {
    if (!field->GetObjSchema() && field->toString(object, -1) != field->toString(*fresh, -1))
      values += field->GetName() + '=' + field->toString(object, -1);
  }
  return values.join(", ");
}

namespace {

class ChangeLog final : public ObjectObserver {
public:
  explicit ChangeLog(SchemaObject& root) : ObjectObserver(root) {
    // Features don't report what changes in them unless somebody wants to know.
    root.SetInheritedShouldNotifySubFieldChanged(true);
  }

  void OnFieldChanged(const FieldChangedEvent& event) override { Show(event.object, event.field); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override {
    Show(event.changed, event.field);
  }
  void OnPreDelete(const PreDeleteEvent&) override {}

private:
  void Show(const SchemaObject& object, const Field& field) {
    const bool isContent = field.IsArray() && object.isOfType(NetworkLink::GetClassSchema());
    // Hidden fields are for clients, and some news are of what another object hands down.
    if (isContent || field.GetType() == Field::kHidden || !object.isOfType(field.GetSchema()))
      return;
    QString line = "           " + GetTitle(object) + ": ";
    if (&field == &AbstractFeatureSchema::GetSingleton().visibility)
      line += static_cast<const AbstractFeature&>(object).isVisible() ? "shown" : "hidden";
    else if (!field.GetObjSchema())
      line += field.GetName() + " = \"" + field.toString(object, -1) + '"';
    else if (field.IsArray())
      line += QString::number(field.getCount(object)) + " children";
    else
      line += field.GetObjSchema()->GetName() + (field.GetObject(object, -1) ? " set" : " gone");
    if (line != latest_)
      Print(line);
    latest_ = line;
  }

  QString latest_; // the same change is heard by several ways
};

class ErrorLog final : public IErrorHandler {
public:
  void OnParseError(ErrorReport& report) override {
    Print("           refused: " + report.text.simplified());
  }
};

} // namespace

std::unique_ptr<ObjectObserver> LogChanges(SchemaObject& root) {
  return std::make_unique<ChangeLog>(root);
}

RefPtr<IErrorHandler> MakeErrorLog() { return RefPtr<IErrorHandler>(new ErrorLog); }
