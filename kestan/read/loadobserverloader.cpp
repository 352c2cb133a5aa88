#include "kestan/read/loadobserverloader.h"

namespace vorrel::kestan {

std::atomic<LoadObserverLoader*> LoadObserverLoader::s_singleton_{nullptr};

LoadObserverLoader::LoadObserverLoader() { s_singleton_ = this; }

LoadObserverLoader::~LoadObserverLoader() {
  LoadObserverLoader* self = this; // another one may have taken its place
  s_singleton_.compare_exchange_strong(self, nullptr);
}

} // namespace vorrel::kestan
