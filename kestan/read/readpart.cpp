// What the reader does when the library starts and stops.

#include "kestan/core/librarypart.h"
#include "kestan/core/threadcontext.h"
#include "kestan/read/deprecationmanager.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/loadobserver.h"

namespace vorrel::kestan {

namespace {

class ReadPart final : public LibraryPart {
public:
  void Start() override {
    LoadObserver::Initialize();
    ExpatHandler::Startup();
  }
  void Stop() override {
    ExpatHandler::Shutdown();
    LoadObserver::Shutdown();
  }
  void DropSharedObjects() override { DeprecationManager::DeleteSingleton(); }
  bool MergeContext(ThreadContext& from, const IJobContinuator& continuator) override {
    return LoadObserver::MergeIntoMain(from, continuator);
  }
  void EndWait(SchemaObject& object) override { LoadObserver::NotifyPreDelete(object); }
  void ObserveCreation() override { LoadObserver::ObserveCreation(*ThreadContext::GetMain()); }
};

ReadPart s_read_part;

} // namespace

} // namespace vorrel::kestan
