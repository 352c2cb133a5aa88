#pragma once

#include "kestan/host/export.h"
#include "kestan/host/system.h"

namespace vorrel::kestan {

/// Holds creation notices back for the length of a scope; the end of the outermost one gives them.
class KESTAN_EXPORT NotificationDeferrer {
public:
  NotificationDeferrer();
  NotificationDeferrer(const NotificationDeferrer&) = delete;
  NotificationDeferrer& operator=(const NotificationDeferrer&) = delete;
  /// Does nothing on another thread than the one that made the deferrer.
  ~NotificationDeferrer();

private:
  System::ThreadId thread_;
};

/// Objects born in its scope are never announced.
class KESTAN_EXPORT NotificationDisabler {
public:
  NotificationDisabler();
  NotificationDisabler(const NotificationDisabler&) = delete;
  NotificationDisabler& operator=(const NotificationDisabler&) = delete;
  ~NotificationDisabler();

private:
  System::ThreadId thread_;
};

/// Objects born in its scope are their maker's alone: no id leads to them, and nobody hears of
/// their birth or of what is set in them. So they may be handed to any thread, and go there.
class KESTAN_EXPORT UnlistedObjects {
public:
  UnlistedObjects();
  UnlistedObjects(const UnlistedObjects&) = delete;
  UnlistedObjects& operator=(const UnlistedObjects&) = delete;
  ~UnlistedObjects();

private:
  NotificationDisabler disabler_;
  bool formerNotifyEnabled_;
};

} // namespace vorrel::kestan
