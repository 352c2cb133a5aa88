#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class AbstractFeature;

/// The time that the process shows.
class KESTAN_EXPORT Time {
public:
  /// True for a feature that inherits no time, or one that is shown now.
  static bool isVisible(const AbstractFeature& feature);

  /// Times in the world have changed. Any thread.
  static void NotifyWorldRangeChanged();
};

} // namespace vorrel::kestan
