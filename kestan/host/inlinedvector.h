#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace vorrel {

/// Vector whose first `N` elements need no heap. `N` is a power of two; beyond it the capacity
/// doubles.
template <class T, std::size_t N> class InlinedVector {
  static_assert(N > 0 && (N & (N - 1)) == 0, "the capacity stays a power of two");
  static_assert(std::is_nothrow_move_constructible_v<T>, "elements move when the vector grows");

public:
  using value_type = T;

  InlinedVector() = default;
  ~InlinedVector() {
    clear();
    FreeHeap();
  }
  InlinedVector(const InlinedVector&) = delete;
  InlinedVector& operator=(const InlinedVector&) = delete;

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::size_t capacity() const { return capacity_; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  T& operator[](std::size_t i) { return data_[i]; }
  const T& operator[](std::size_t i) const { return data_[i]; }
  T& back() { return data_[size_ - 1]; }
  const T& back() const { return data_[size_ - 1]; }

  /// By value, so that an element of the vector itself can be appended.
  void push_back(T value) {
    if (size_ == capacity_)
      Grow();
    ::new (static_cast<void*>(data_ + size_)) T(std::move(value));
    ++size_;
  }
  void pop_back() { data_[--size_].~T(); }
  void clear() {
    std::destroy_n(data_, size_);
    size_ = 0;
  }

private:
  T* Inline() { return reinterpret_cast<T*>(storage_); }

  void Grow() {
    T* const grown = std::allocator<T>().allocate(capacity_ * 2);
    std::uninitialized_move_n(data_, size_, grown);
    std::destroy_n(data_, size_);
    FreeHeap();
    data_ = grown;
    capacity_ *= 2;
  }
  void FreeHeap() {
    if (data_ != Inline())
      std::allocator<T>().deallocate(data_, capacity_);
  }

  alignas(T) std::byte storage_[N * sizeof(T)];
  T* data_ = Inline();
  std::size_t size_ = 0;
  std::size_t capacity_ = N;
};

} // namespace vorrel
