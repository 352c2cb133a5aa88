#include "kestan/core/notificationdeferrer.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/threadcontext.h"

namespace vorrel::kestan {

NotificationDeferrer::NotificationDeferrer() : thread_(System::GetCurrentThread()) {
  ++ThreadContext::GetCurrent()->deferCount;
}

NotificationDeferrer::~NotificationDeferrer() {
  if (System::GetCurrentThread() == thread_)
    CreationObserver::EndNotificationDeferrer();
}

NotificationDisabler::NotificationDisabler() : thread_(System::GetCurrentThread()) {
  ++ThreadContext::GetCurrent()->disableCount;
}

NotificationDisabler::~NotificationDisabler() {
  if (System::GetCurrentThread() == thread_)
    --ThreadContext::GetCurrent()->disableCount;
}

} // namespace vorrel::kestan
