#pragma once

#include "kestan/host/export.h"
#include "kestan/host/memory.h"

#include <QString>

namespace vorrel::kestan {

/// The hint targets that the process knows. An object keeps the index of its target. Thread: any.
class KESTAN_EXPORT HintTargets {
public:
  /// Learns the targets that aren't known yet.
  static void AddHintTargets(const mmvector<QString>& targets);
  /// The index of the target that a `hint` attribute names, which is learnt when it's new; -1
  /// without one, and when there's no room for more.
  static int GetHintTargetId(const QString& text);
  /// Null for an index without a target.
  static QString GetHintTargetString(int id);
  /// The `hint` attribute for the target, else for the one that the options name, else empty.
  static QString ComposeHintString(int id);
};

} // namespace vorrel::kestan
