#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

namespace vorrel {

/// A look at `count` consecutive elements that somebody else owns. `T` may be const.
template <class T> class ArraySlice {
public:
  constexpr ArraySlice() = default;
  constexpr ArraySlice(T* data, std::size_t count) : data_(data), count_(count) {}
  template <class A>
  ArraySlice(std::vector<std::remove_const_t<T>, A>& v) : data_(v.data()), count_(v.size()) {}
  template <class A, class U = T, class = std::enable_if_t<std::is_const_v<U>>>
  ArraySlice(const std::vector<std::remove_const_t<T>, A>& v) : data_(v.data()), count_(v.size()) {}

  constexpr T* data() const { return data_; }
  constexpr std::size_t size() const { return count_; }
  constexpr bool empty() const { return count_ == 0; }
  constexpr T* begin() const { return data_; }
  constexpr T* end() const { return data_ + count_; }
  constexpr T& operator[](std::size_t i) const { return data_[i]; }

private:
  T* data_ = nullptr;
  std::size_t count_ = 0;
};

} // namespace vorrel
