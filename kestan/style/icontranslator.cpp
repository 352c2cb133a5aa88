#include "kestan/style/icontranslator.h"

#include "kestan/style/iconschema.h"

namespace vorrel::kestan {

IconTranslator::IconTranslator() : SchemaObjectTranslator(QStringLiteral("Icon")) {}

RefPtr<SchemaObject> IconTranslator::Translate(SchemaObject& object) const {
  if (object.isOfType(Icon::GetClassSchema()))
    static_cast<Icon&>(object).AdoptLegacyRectangle();
  return RefPtr<SchemaObject>(&object);
}

} // namespace vorrel::kestan
