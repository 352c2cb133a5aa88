#include "kestan/read/deprecationmanager.h"

#include "kestan/style/icontranslator.h" // each class brings its own

#include <atomic>
#include <mutex>

namespace vorrel::kestan {

namespace {

std::atomic<DeprecationManager*> s_singleton{nullptr};
std::mutex s_lock;

} // namespace

SchemaObjectTranslator::~SchemaObjectTranslator() = default;

DeprecationManager::DeprecationManager() : HashMap(4) {
  translators_.push_back(std::make_unique<IconTranslator>());
  for (const auto& translator : translators_)
    insert(*translator);
}

DeprecationManager::~DeprecationManager() { clear(); }

DeprecationManager& DeprecationManager::GetSingleton() {
  DeprecationManager* manager = s_singleton.load(std::memory_order_acquire);
  if (!manager) {
    const std::lock_guard<std::mutex> guard(s_lock);
    manager = s_singleton.load(std::memory_order_relaxed);
    if (!manager) {
      manager = new DeprecationManager;
      s_singleton.store(manager, std::memory_order_release);
    }
  }
  return *manager;
}

void DeprecationManager::DeleteSingleton() {
  delete s_singleton.exchange(nullptr, std::memory_order_acq_rel);
}

} // namespace vorrel::kestan
