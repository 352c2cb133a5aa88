#include "kestan/core/library.h"

#include "kestan/core/librarypart.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/schema.h"
#include "kestan/core/threadcontext.h"
#include "kestan/core/threadscope.h"
#include "kestan/host/pumpqueue.h"
#include "kestan/host/resources.h"
#include "kestan/host/system.h"

#include <memory>

namespace vorrel::kestan {

namespace {

bool s_initialized = false;
std::unique_ptr<ResourceManager> s_resource_manager;
/// Resources that the client's installation may add; there needn't be such a file.
std::unique_ptr<QResourceRegistrar> s_local_shapes;

} // namespace

void GInitialize() { GInitialize(KestanCreationParams()); }

void GInitialize(const KestanCreationParams& params) {
  if (s_initialized)
    return;
  s_initialized = true;
  System::SetMainThread();
  LibraryPart::ForEach([](LibraryPart& part) { part.Start(); });
  s_resource_manager = std::make_unique<ResourceManager>();
  LibraryPart::ForEach([](LibraryPart& part) { part.AddResourceLoaders(*s_resource_manager); });
  s_resource_manager->AddLoader(std::make_unique<QtResourceLoader>());
  s_resource_manager->AddLoader(std::make_unique<FileResourceLoader>());
  s_local_shapes = std::make_unique<QResourceRegistrar>(QStringLiteral("localshapes"));
  ThreadContext::Initialize();
  ThreadScope::Startup();
  const NotificationDeferrer deferrer;
  Schema::Initialize(params);
  LibraryPart::ForEach([](LibraryPart& part) { part.ObserveCreation(); });
}

void GShutdown() {
  if (!s_initialized)
    return;
  {
    const MainThreadWait wait;
    ThreadScope::Shutdown();
  }
  PumpQueue::Get().AbandonJobs();
  Schema::Shutdown();
  ThreadContext::Shutdown();
  s_local_shapes.reset();
  s_resource_manager.reset();
  LibraryPart::ForEach([](LibraryPart& part) { part.Stop(); });
  s_initialized = false;
}

bool GIsInitialized() { return s_initialized; }

ResourceManager* GetResourceManager() { return s_resource_manager.get(); }

} // namespace vorrel::kestan
