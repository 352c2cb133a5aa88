#include "tests/style/styletest.h"

#include "kestan/style/icon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/styleschema.h"

#include <QStringList>

namespace vorrel::kestan {

AbstractFeature* StyleTest::Find(const SchemaObject& root, const QString& name) {
  mmvector<SchemaObject*> features;
  root.FindBySchema(AbstractFeature::GetClassSchema(), features);
  for (SchemaObject* object : features) {
    auto* feature = static_cast<AbstractFeature*>(object);
    if (feature->GetName() == name)
      return feature;
  }
  ADD_FAILURE() << "no feature " << name.toStdString();
  return nullptr;
}

QString StyleTest::Describe(const Style* style) {
  if (!style)
    return QStringLiteral("null");
  if (style == Style::GetFetchingStyle())
    return QStringLiteral("fetching");
  if (style == Style::GetFailedStyle())
    return QStringLiteral("failed");
  QStringList values;
  for (const Field* part : StyleSchema::GetSingleton().written) {
    const SchemaObject* subStyle = part->GetObject(*style, -1);
    if (!subStyle)
      continue;
    const RefPtr<SchemaObject> fresh =
        subStyle->GetSchema().CreateInstance(KmlId(), QString(), nullptr);
    for (const Field* field : subStyle->GetSchema().GetSerializedFields()) {
      const QString value = field->GetObjSchema() ? QString() : field->toString(*subStyle, -1);
      if (value != (field->GetObjSchema() ? QString() : field->toString(*fresh, -1)))
        values += subStyle->getType() + '.' + field->GetName() + '=' + value;
    }
  }
  const Icon* icon = style->GetIconStyle()->GetIcon();
  if (icon && icon != Icon::GetDefaultIcon())
    values += QStringLiteral("icon=") + icon->GetUrl();
  return values.join(' ');
}

QString InDocument(const QString& content) {
  return QStringLiteral("<kml xmlns=\"http://www.vorrel.com/kml/2.2\" "
                        "xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Document>%1</Document>"
                        "</kml>")
      .arg(content);
}

} // namespace vorrel::kestan
