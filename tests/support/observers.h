#pragma once

#include "kestan/core/creationobserver.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"
#include "kestan/read/loadobserverloader.h"

#include <QStringList>

#include <atomic>
#include <functional>

namespace vorrel::kestan {

/// Does what a test wants at each change of an object and of what lies below it. It outlives the
/// object.
class OnChange final : public ObjectObserver {
public:
  OnChange(SchemaObject* object, std::function<void(const Field& field)> deed)
      : ObjectObserver(object), deed_(std::move(deed)) {}
  void OnFieldChanged(const FieldChangedEvent& event) override { deed_(event.field); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override { deed_(event.field); }
  void OnPreDelete(const PreDeleteEvent&) override { SetObserved(nullptr); }

private:
  const std::function<void(const Field&)> deed_;
};

/// Counts the objects of a class that are announced, on any thread where it's told so, and does
/// what a test wants for each.
class OnCreate final : public CreationObserver {
public:
  using CreationObserver::CreationObserver;
  void OnPostCreate(const Event& event) override {
    ++seen;
    const auto present = deed; // it may be the end of this observer
    if (present)
      present(*event.object);
  }

  std::function<void(SchemaObject&)> deed;
  std::atomic<int> seen{0};
};

/// Notes which documents are asked for, and says which loads have ended.
class FakeLoader final : public LoadObserverLoader {
public:
  void RequestLoad(const QString& url) override { requested += url; }
  bool HasLoadEnded(const QString& url) override { return ended.contains(url); }

  QStringList requested;
  QStringList ended;
};

} // namespace vorrel::kestan
