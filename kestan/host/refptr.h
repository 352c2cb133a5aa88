#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace vorrel {

/// Owning pointer to an object that counts its references by `ref` and `unref`.
///
/// As large as a plain pointer. `T` may be incomplete where a `RefPtr<T>` is only declared.
template <class T> class RefPtr {
public:
  RefPtr() noexcept = default;
  RefPtr(std::nullptr_t) noexcept {}
  /// Takes a reference of its own.
  RefPtr(T* object) : object_(object) {
    if (object_)
      object_->ref();
  }
  RefPtr(const RefPtr& other) : RefPtr(other.object_) {}
  RefPtr(RefPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  // Only upwards: `RefPtrCast` is for the other way.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  RefPtr(const RefPtr<U>& other) : RefPtr(static_cast<T*>(other.get())) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  RefPtr(RefPtr<U>&& other) noexcept : object_(other.object_) {
    other.object_ = nullptr;
  }
  ~RefPtr() {
    if (object_)
      object_->unref();
  }

  // The old object goes last, when this pointer already shows the new one: its end may call back.
  RefPtr& operator=(const RefPtr& other) {
    RefPtr(other).swap(*this);
    return *this;
  }
  RefPtr& operator=(RefPtr&& other) noexcept {
    RefPtr(std::move(other)).swap(*this);
    return *this;
  }
  RefPtr& operator=(T* object) {
    RefPtr(object).swap(*this);
    return *this;
  }
  RefPtr& operator=(std::nullptr_t) {
    reset();
    return *this;
  }

  void reset() { RefPtr().swap(*this); }
  void swap(RefPtr& other) noexcept { std::swap(object_, other.object_); }

  T* get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

private:
  template <class U> friend class RefPtr;

  T* object_ = nullptr;
};

/// The same object as a `T`, which the caller knows it to be.
template <class T, class U> RefPtr<T> RefPtrCast(const RefPtr<U>& object) {
  return RefPtr<T>(static_cast<T*>(object.get()));
}

template <class T, class U> bool operator==(const RefPtr<T>& a, const RefPtr<U>& b) {
  return a.get() == b.get();
}
template <class T, class U> bool operator!=(const RefPtr<T>& a, const RefPtr<U>& b) {
  return a.get() != b.get();
}
template <class T> bool operator==(const RefPtr<T>& a, const T* b) { return a.get() == b; }
template <class T> bool operator!=(const RefPtr<T>& a, const T* b) { return a.get() != b; }
template <class T> bool operator==(const T* a, const RefPtr<T>& b) { return a == b.get(); }
template <class T> bool operator!=(const T* a, const RefPtr<T>& b) { return a != b.get(); }
template <class T> bool operator==(const RefPtr<T>& a, std::nullptr_t) { return !a; }
template <class T> bool operator!=(const RefPtr<T>& a, std::nullptr_t) { return bool(a); }
template <class T> bool operator==(std::nullptr_t, const RefPtr<T>& a) { return !a; }
template <class T> bool operator!=(std::nullptr_t, const RefPtr<T>& a) { return bool(a); }

} // namespace vorrel
