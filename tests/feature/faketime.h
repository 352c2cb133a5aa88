#pragma once

#include "kestan/host/datetime.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

/// A moment that a test shows or hides.
class FakeTime final : public TimePrimitive {
public:
  explicit FakeTime(const QString& text, bool visible = true)
      : TimePrimitive(GetClassSchema(), KmlId(), QString()), visible_(visible),
        time_(DateTime::FromString(text)) {}
  ~FakeTime() override { NotifyPreDelete(); }

  bool isVisible() const override { return visible_; }
  const DateTime* GetBegin() const override { return &time_; }
  const DateTime* GetEnd() const override { return &time_; }

  bool visible_;

private:
  DateTime time_;
};

} // namespace vorrel::kestan
