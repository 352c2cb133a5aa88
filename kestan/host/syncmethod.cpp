#include "kestan/host/syncmethod.h"

namespace vorrel {

SyncMethod::~SyncMethod() = default;

void SyncMethod::OnDue() {
  const bool autoDelete = autoDelete_; // afterwards only a method that deletes itself still exists
  Execute();
  if (autoDelete)
    delete this;
}

void SyncMethod::OnDropped() {
  const bool autoDelete = autoDelete_;
  OnRefused();
  if (autoDelete)
    delete this;
}

} // namespace vorrel
