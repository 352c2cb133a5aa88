#pragma once

#include "kestan/host/datetime.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class TimeStampSchema;
class GxTimeStampSchema;

/// A single point in time.
class KESTAN_EXPORT TimeStamp : public TimePrimitive {
public:
  using ClassSchema = TimeStampSchema;
  static const Schema& GetClassSchema();
  TimeStamp(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~TimeStamp() override;

  const DateTime& GetWhen() const { return when_; }
  /// Nothing happens for a time that is written like the present one.
  void SetWhen(const DateTime& when);

  bool isVisible() const override;
  const DateTime* GetBegin() const override;
  const DateTime* GetEnd() const override;

  /// A date that stands in the element itself.
  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;

protected:
  TimeStamp(const GxTimeStampSchema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class TimeStampSchema;

  DateTime when_;
};

/// `gx:TimeStamp`, a class of its own so that it's written as it was read.
class KESTAN_EXPORT GxTimeStamp final : public TimeStamp {
public:
  using ClassSchema = GxTimeStampSchema;
  static const Schema& GetClassSchema();
  GxTimeStamp(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~GxTimeStamp() override;
};

} // namespace vorrel::kestan
