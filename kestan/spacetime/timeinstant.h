#pragma once

#include "kestan/host/datetime.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class TimeInstantSchema;

/// The older form of `TimeStamp`, which is also what it's written as.
class KESTAN_EXPORT TimeInstant final : public TimePrimitive {
public:
  using ClassSchema = TimeInstantSchema;
  static const Schema& GetClassSchema();
  TimeInstant(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~TimeInstant() override;

  const DateTime& GetTimePosition() const { return timePosition_; }
  /// Tells the observers in any case.
  void SetTimePosition(const DateTime& time);
  /// True once the time was set, be it to the undefined one.
  bool IsSpecified() const { return specified_; }

  bool isVisible() const override;
  const DateTime* GetBegin() const override;
  const DateTime* GetEnd() const override;

  bool IsGiven(const Field& field) const override;
  void SetNotGiven(const Field& field) override;
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKml(WriteState& state) const override;
  /// The time alone in an element of this name; nothing for an undefined time, unless `isForced`.
  void WriteTimeAs(WriteState& state, const char* element, bool isForced) const;

private:
  friend class TimeInstantSchema;

  DateTime timePosition_;
  bool specified_ = false;
};

} // namespace vorrel::kestan
