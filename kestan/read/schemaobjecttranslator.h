#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <QString>

namespace vorrel::kestan {

/// Turns finished objects of a deprecated class into their current form.
class KESTAN_EXPORT SchemaObjectTranslator : public MemoryObject,
                                             public HashMapEntry<QString, SchemaObjectTranslator> {
public:
  explicit SchemaObjectTranslator(const QString& name) : name_(name) {}
  virtual ~SchemaObjectTranslator();

  /// What the parent receives in the place of `object`; may be `object` itself, or null.
  virtual RefPtr<SchemaObject> Translate(SchemaObject& object) const = 0;
  /// Name of the deprecated class.
  virtual const QString& GetName() const { return name_; }
  const QString& GetKey() const { return name_; }

private:
  QString name_;
};

} // namespace vorrel::kestan
