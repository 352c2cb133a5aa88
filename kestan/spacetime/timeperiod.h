#pragma once

#include "kestan/host/refptr.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class TimeInstant;
class TimePeriodSchema;

/// The older form of `TimeSpan`, which is also what it's written as.
class KESTAN_EXPORT TimePeriod final : public TimePrimitive {
public:
  using ClassSchema = TimePeriodSchema;
  static const Schema& GetClassSchema();
  TimePeriod(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~TimePeriod() override;

  TimeInstant* GetBeginInstant() const { return begin_.get(); }
  TimeInstant* GetEndInstant() const { return end_.get(); }
  void SetBeginInstant(TimeInstant* begin);
  void SetEndInstant(TimeInstant* end);

  bool IsSpan() const override;
  bool isVisible() const override;
  /// The instants' times, be they undefined.
  const DateTime* GetBegin() const override;
  const DateTime* GetEnd() const override;

  void WriteKml(WriteState& state) const override;

private:
  friend class TimePeriodSchema;

  RefPtr<TimeInstant> begin_;
  RefPtr<TimeInstant> end_;
};

} // namespace vorrel::kestan
