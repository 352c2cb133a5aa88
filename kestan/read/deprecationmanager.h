#pragma once

#include "kestan/host/export.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/memory.h"
#include "kestan/read/schemaobjecttranslator.h"

#include <QString>

#include <memory>

namespace vorrel::kestan {

/// The translators of all deprecated classes. Filled when it's made, so that any number of threads
/// may read it.
class KESTAN_EXPORT DeprecationManager : private HashMap<QString, SchemaObjectTranslator> {
public:
  static DeprecationManager& GetSingleton();
  /// Part of the library's stop: no other thread uses it any more.
  static void DeleteSingleton();

  /// The translator of a class, or null.
  const SchemaObjectTranslator* FindTranslator(const QString& className) const {
    return find(className);
  }

private:
  DeprecationManager();
  ~DeprecationManager();

  mmvector<std::unique_ptr<SchemaObjectTranslator>> translators_;
};

} // namespace vorrel::kestan
