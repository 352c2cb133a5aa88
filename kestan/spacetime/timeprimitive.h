#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel {
class DateTime;
}

namespace vorrel::kestan {

class TimePrimitiveSchema;

/// When a feature exists, or when a view is of: an instant or a span. Each change of one sooner or
/// later reaches the `TimeObserver`s.
class KESTAN_EXPORT TimePrimitive : public SchemaObject {
public:
  using ClassSchema = TimePrimitiveSchema;
  static const Schema& GetClassSchema();
  ~TimePrimitive() override;

  /// True when the two ends are given and differ, or when one of them is open.
  virtual bool IsSpan() const;
  /// Whether the time is in the range that `Time` holds, both ends included. An end that isn't
  /// given is infinitely far away, and everything is visible while the filter is off.
  virtual bool isVisible() const = 0;
  /// The ends; null for one that isn't given.
  virtual const DateTime* GetBegin() const = 0;
  virtual const DateTime* GetEnd() const = 0;

  void NotifyFieldChanged(const Field& field) override;

protected:
  TimePrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// The start tag up to its ">", for the older classes, which are written under newer names.
  void WriteStartTagAs(WriteState& state, const char* name) const;
};

} // namespace vorrel::kestan
