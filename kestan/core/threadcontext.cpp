#include "kestan/core/threadcontext.h"

#include "kestan/core/librarypart.h"
#include "kestan/core/threadmerge.h"
#include "kestan/host/job.h"

#include <iterator>

namespace vorrel::kestan {

namespace {

constexpr unsigned kLog2MinimumBuckets = 10;

System::ThreadKey s_key = System::kInvalidThreadKey;

} // namespace

ThreadContext* ThreadContext::s_main_thread_context = nullptr;

ThreadContext::ThreadContext() : HashMap(kLog2MinimumBuckets), thread(System::GetCurrentThread()) {
  if (System::IsMainThread())
    s_main_thread_context = this;
  SetCurrent(this);
}

ThreadContext::~ThreadContext() {
  if (s_main_thread_context == this)
    s_main_thread_context = nullptr;
  else if (isSource_ && s_main_thread_context)
    s_main_thread_context->source_ = nullptr;
  if (GetCurrent() == this)
    SetCurrent(nullptr);
}

void ThreadContext::Initialize() {
  s_key = System::CreateThreadKey();
  new (HeapManager::GetStaticHeap()) ThreadContext();
}

void ThreadContext::Shutdown() {
  delete s_main_thread_context;
  System::DeleteThreadKey(s_key);
  s_key = System::kInvalidThreadKey;
}

ThreadContext* ThreadContext::GetCurrent() {
  return static_cast<ThreadContext*>(System::GetThreadStorage(s_key));
}

void ThreadContext::SetCurrent(ThreadContext* context) { System::SetThreadStorage(s_key, context); }

bool ThreadContext::IsUnused() const {
  return count() == 0 && deferred.empty() && mergeNotices.empty() && followers_.empty() &&
         !styleLoadObservers && !schemaLoadObservers && !customSchemas && !timedFeatures;
}

bool ThreadContext::MergeIntoMain(const IJobContinuator& continuator, AbstractJob* job) {
  ThreadContext& main = *s_main_thread_context;
  if (this == &main)
    return false;
  if (job) {
    if (main.source_ && main.source_ != this)
      return true;
    main.source_ = this;
    isSource_ = true;
  }
  if (!main.MergeSome(*this, replaceDuplicates, [&] { return continuator.ShouldContinue(); }))
    return true;
  main.deferred.insert(main.deferred.end(), std::make_move_iterator(deferred.begin()),
                       std::make_move_iterator(deferred.end()));
  deferred.clear();
  while (!mergeNotices.empty()) {
    const MergeNotice notice = std::move(mergeNotices.front());
    mergeNotices.pop_front();
    if (notice.object->GetRefCount() > 1)
      notice.send(*notice.object);
    if (!continuator.ShouldContinue())
      return true;
  }
  return LibraryPart::AnyOf(
      [&](LibraryPart& part) { return part.MergeContext(*this, continuator); });
}

} // namespace vorrel::kestan
