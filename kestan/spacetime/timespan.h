#pragma once

#include "kestan/host/datetime.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class TimeSpanSchema;
class GxTimeSpanSchema;

/// A time from a beginning to an end, each of which may be open.
class KESTAN_EXPORT TimeSpan : public TimePrimitive {
public:
  using ClassSchema = TimeSpanSchema;
  static const Schema& GetClassSchema();
  TimeSpan(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~TimeSpan() override;

  /// Null opens the end. Nothing happens for a time that is written like the present one.
  void SetBegin(const DateTime* begin);
  void SetEnd(const DateTime* end);

  bool IsSpan() const override;
  bool isVisible() const override;
  const DateTime* GetBegin() const override;
  const DateTime* GetEnd() const override;

protected:
  TimeSpan(const GxTimeSpanSchema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class TimeSpanSchema;

  DateTime begin_;
  DateTime end_;
};

/// `gx:TimeSpan`, a class of its own so that it's written as it was read.
class KESTAN_EXPORT GxTimeSpan final : public TimeSpan {
public:
  using ClassSchema = GxTimeSpanSchema;
  static const Schema& GetClassSchema();
  GxTimeSpan(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~GxTimeSpan() override;
};

} // namespace vorrel::kestan
