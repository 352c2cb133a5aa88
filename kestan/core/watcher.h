#pragma once

#include "kestan/core/objectobserver.h"

namespace vorrel::kestan {

/// A weak pointer: turns null when the object is deleted.
template <class T> class Watcher final : public ObjectObserver {
public:
  explicit Watcher(T* object = nullptr) : ObjectObserver(object), object_(object) {}

  T* get() const { return object_; }
  void set(T* object) {
    SetObserved(object);
    object_ = object;
  }

  void OnFieldChanged(const FieldChangedEvent&) override {}
  void OnPreDelete(const PreDeleteEvent&) override { set(nullptr); }

private:
  T* object_;
};

} // namespace vorrel::kestan
