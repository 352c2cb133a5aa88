#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel {
class DateTime;
}

namespace vorrel::kestan {

class TimePrimitiveSchema;

/// The moment, or the span of time, to which a feature or a view belongs.
class KESTAN_EXPORT TimePrimitive : public SchemaObject {
public:
  using ClassSchema = TimePrimitiveSchema;
  static const Schema& GetClassSchema();
  ~TimePrimitive() override;

  /// True when the two ends differ.
  virtual bool IsSpan() const { return false; }
  /// True when the time lies in the range that is chosen. Takes no lock and allocates nothing.
  virtual bool isVisible() const = 0;
  // Null for an end that isn't given: the time is open there.
  virtual const DateTime* GetBegin() const = 0;
  virtual const DateTime* GetEnd() const = 0;

protected:
  TimePrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
