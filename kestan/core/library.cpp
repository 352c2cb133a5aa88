#include "kestan/core/library.h"

#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/schema.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/resources.h"
#include "kestan/host/system.h"
#include "kestan/read/deprecationmanager.h" // ends with the library
#include "kestan/read/expathandler.h"       // starts and ends with the library
#include "kestan/read/loadobserver.h"       // starts and ends with the library
#include "kestan/style/localshapes.h"       // built-in resources

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
  LoadObserver::Initialize();
  ExpatHandler::Startup();
  s_resource_manager = std::make_unique<ResourceManager>();
  s_resource_manager->AddLoader(std::make_unique<LocalShapes>());
  s_resource_manager->AddLoader(std::make_unique<QtResourceLoader>());
  s_resource_manager->AddLoader(std::make_unique<FileResourceLoader>());
  s_local_shapes = std::make_unique<QResourceRegistrar>(QStringLiteral("localshapes"));
  ThreadContext::Initialize();
  const NotificationDeferrer deferrer;
  Schema::Initialize(params);
  LoadObserver::ObserveCreation(*ThreadContext::GetMain());
}

void GShutdown() {
  if (!s_initialized)
    return;
  DeprecationManager::DeleteSingleton();
  Schema::Shutdown();
  ThreadContext::Shutdown();
  s_local_shapes.reset();
  s_resource_manager.reset();
  ExpatHandler::Shutdown();
  LoadObserver::Shutdown();
  s_initialized = false;
}

bool GIsInitialized() { return s_initialized; }

ResourceManager* GetResourceManager() { return s_resource_manager.get(); }

} // namespace vorrel::kestan
