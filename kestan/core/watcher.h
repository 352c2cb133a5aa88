#pragma once

#include "kestan/core/objectobserver.h"

namespace vorrel::kestan {

/// A weak pointer: null from the moment on at which the object begins to die. As an observer it's
/// disabled: it wants no news, so that nobody takes trouble to make them for it.
template <class T> class Watcher final : public ObjectObserver {
public:
  explicit Watcher(T* object = nullptr) : ObjectObserver(object), object_(object) {
    SetEnabled(false);
  }

  // An object takes its observers off before it goes, whether they were told or not.
  T* get() const { return IsAttached() && !object_->GetBit(kBitDeleting) ? object_ : nullptr; }
  void set(T* object) {
    SetObserved(object);
    object_ = object;
  }

  void OnFieldChanged(const FieldChangedEvent&) override {}
  void OnPreDelete(const PreDeleteEvent&) override {}

private:
  T* object_;
};

} // namespace vorrel::kestan
