#pragma once

#include "kestan/host/timer.h"

namespace vorrel::kestan {

/// Turns any number of changes in one turn of the main loop into one notice.
class KESTAN_EXPORT TimeNotifier final : public Timer {
public:
  TimeNotifier();

private:
  void Fire() override;
};

} // namespace vorrel::kestan
