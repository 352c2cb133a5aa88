#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <atomic>

namespace vorrel::kestan {

/// The client's loader of documents that open references lead to. At most one exists at a time;
/// without one, references wait for what happens to be loaded.
class KESTAN_EXPORT LoadObserverLoader {
public:
  LoadObserverLoader();
  LoadObserverLoader(const LoadObserverLoader&) = delete;
  LoadObserverLoader& operator=(const LoadObserverLoader&) = delete;
  virtual ~LoadObserverLoader();

  static LoadObserverLoader* GetSingleton() { return s_singleton_; }

  /// A reference leads into the document at `url`. Asked for each such reference, also while the
  /// document is on its way. Any thread that reads a document.
  virtual void RequestLoad(const QString& url) = 0;
  /// Whether the document was read, or can't be: what isn't known by then won't come. For one that
  /// a worker reads that is so once it's merged (`ThreadScope::Observer::OnPostMerge`). Main
  /// thread.
  ///
  /// References hear of it by a job of the pump: behind each merge and each document that is read
  /// on the main thread. A client tells of a load that fails by `LoadObserver::UpdateAllLater`.
  virtual bool HasLoadEnded(const QString& url) = 0;

private:
  static std::atomic<LoadObserverLoader*> s_singleton_;
};

} // namespace vorrel::kestan
