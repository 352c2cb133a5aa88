#include "kestan/core/threadcontext.h"

namespace vorrel::kestan {

namespace {

constexpr unsigned kLog2MinimumBuckets = 10;

System::ThreadKey s_key = System::kInvalidThreadKey;

} // namespace

ThreadContext* ThreadContext::s_main_thread_context = nullptr;

ThreadContext::ThreadContext()
    : HashMap(kLog2MinimumBuckets), thread(System::GetCurrentThread()) {
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

} // namespace vorrel::kestan
