#include "kestan/core/threadcontext.h"

#include "kestan/host/job.h"
#include "kestan/read/loadobserverlist.h" // open references move with the objects
#include "kestan/style/stylecache.h"      // ends with the context

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
  System::SetThreadStorage(s_key, this);
}

ThreadContext::~ThreadContext() {
  if (s_main_thread_context == this)
    s_main_thread_context = nullptr;
  if (System::GetCurrentThread() == thread)
    System::SetThreadStorage(s_key, nullptr);
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

std::uint64_t ThreadContext::GetExcessSteps() const {
  std::uint64_t steps = HashMap::GetExcessSteps();
  for (const LoadObserverList* references : {styleLoadObservers.get(), schemaLoadObservers.get()})
    steps += references ? references->GetExcessSteps() : 0;
  return steps;
}

bool ThreadContext::MergeIntoMain(const IJobContinuator& continuator) {
  ThreadContext& main = *s_main_thread_context;
  if (this == &main)
    return false;
  const bool isFirst = !merging_;
  merging_ = true;
  main.merge(*this, replaceDuplicates);
  main.deferred.insert(main.deferred.end(), std::make_move_iterator(deferred.begin()),
                       std::make_move_iterator(deferred.end()));
  deferred.clear();
  for (const MergeNotice& notice : mmvector<MergeNotice>(std::move(mergeNotices))) {
    if (notice.object->GetRefCount() > 1)
      notice.send(*notice.object);
  }
  // From here on nothing of this thread's is left behind, wherever the rest stops.
  LoadObserver::MoveToMain(*this, main, isFirst);
  if (!continuator.ShouldContinue() || LoadObserver::UpdateAll(main, continuator))
    return true;
  merging_ = false;
  return false;
}

} // namespace vorrel::kestan
