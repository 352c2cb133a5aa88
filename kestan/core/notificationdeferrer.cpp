#include "kestan/core/notificationdeferrer.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/threadcontext.h"

#include <utility>

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

UnlistedObjects::UnlistedObjects() {
  ThreadContext& context = *ThreadContext::GetCurrent();
  ++context.unlistedCount;
  formerNotifyEnabled_ = std::exchange(context.notifyEnabled, false);
}

UnlistedObjects::~UnlistedObjects() {
  ThreadContext& context = *ThreadContext::GetCurrent();
  --context.unlistedCount;
  context.notifyEnabled = formerNotifyEnabled_;
}

} // namespace vorrel::kestan
