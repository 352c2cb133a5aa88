#pragma once

#include "kestan/host/export.h"

namespace vorrel {
class ResourceManager;
}

namespace vorrel::kestan {

/// What the client decides once, at the start.
class KESTAN_EXPORT KestanCreationParams {
public:
  bool get_enable_experimental_kml() const { return enable_experimental_kml_; }
  void set_enable_experimental_kml(bool enable) { enable_experimental_kml_ = enable; }

private:
  bool enable_experimental_kml_ = true;
};

/// Starts the library. The client calls it once, on its main thread, before it makes any object;
/// a second call does nothing.
KESTAN_EXPORT void GInitialize();
KESTAN_EXPORT void GInitialize(const KestanCreationParams& params);

/// Stops the library. All objects must be gone, since the schemas go too. Main thread, and not from
/// a notice.
///
/// Waits for the `ThreadScope`s of other threads, which end soon: readers inside them stop, and a
/// thread that wants to join the main one is refused. Such a thread must not wait for anything else
/// that only the main thread can do. What scopes have built and wasn't merged is dropped; documents
/// that are queued aren't read, and nobody is called back. No other thread is in the library else.
KESTAN_EXPORT void GShutdown();

KESTAN_EXPORT bool GIsInitialized();

/// Named built-in resources; null while the library isn't initialised.
KESTAN_EXPORT ResourceManager* GetResourceManager();

} // namespace vorrel::kestan
