#include "kestan/read/parsejob.h"

#include "kestan/core/schema.h"
#include "kestan/host/job.h"
#include "kestan/read/kmlhandler.h"

namespace vorrel::kestan {

namespace {

constexpr char kLinkControl[] = "NetworkLinkControl";

SchemaObject* FindLinkControl(SchemaObject* root) {
  if (!root || root->isOfType(QLatin1String(kLinkControl)))
    return root;
  for (const Field* const field : root->GetSchema().GetObjectFields()) {
    const Schema* const schema = field->GetObjSchema();
    if (schema && schema->GetName() == QLatin1String(kLinkControl))
      return field->GetObject(*root, -1);
  }
  return nullptr;
}

} // namespace

ParseJob::ParseJob(WorkerThread* worker, const QString& url, const QByteArray& bytes,
                   unsigned access, MemoryManager* memoryManager, bool flag)
    : Job("ParseJob"), worker_(worker), session_(ThreadScope::GetSession()), url_(url),
      bytes_(bytes), access_(access), memoryManager_(memoryManager), flag_(flag) {}

ParseJob::~ParseJob() {
  UnrefJob::UnrefOnMain(std::move(result_));
  UnrefJob::UnrefOnMain(std::move(linkControl_));
}

RefPtr<const AtomicReferent> ParseJob::GetKeeper() const { return this; }

void ParseJob::Run() {
  if (session_ != ThreadScope::GetSession())
    return;
  ThreadScope scope(this, false);
  if (scope.IsOpen())
    Read(scope);
}

void ParseJob::Read(ThreadScope& scope) {
  KmlHandler handler(url_, access_, memoryManager_, &scope, nullptr);
  result_ =
      ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(bytes_.constData()),
                            static_cast<std::size_t>(bytes_.size()));
  linkControl_ = FindLinkControl(handler.GetRoot());
  error_ = handler.GetErrorText();
  if (!error_.isEmpty())
    status_ = kFailed;
}

void ParseJob::OnMergeDropped() {
  result_.reset();
  linkControl_.reset();
}

} // namespace vorrel::kestan
