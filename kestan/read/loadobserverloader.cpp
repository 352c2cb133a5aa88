#include "kestan/read/loadobserverloader.h"

namespace vorrel::kestan {

std::atomic<LoadObserverLoader*> LoadObserverLoader::s_singleton_{nullptr};

LoadObserverLoader::LoadObserverLoader() { s_singleton_ = this; }

LoadObserverLoader::~LoadObserverLoader() { s_singleton_ = nullptr; }

} // namespace vorrel::kestan
