#pragma once

#include "kestan/read/schemaobjecttranslator.h"

namespace vorrel::kestan {

/// Brings the rectangle of an `Icon` from its older elements to the extension's, where those don't
/// say otherwise.
class IconTranslator final : public SchemaObjectTranslator {
public:
  IconTranslator();

  RefPtr<SchemaObject> Translate(SchemaObject& object) const override;
};

} // namespace vorrel::kestan
