#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vorrel {

/// Set of pointers, made for many members and few looks at them: the members lie behind each other
/// in one array, where `operator[]` reads them, beside a table of places in it (open addressing,
/// half full at most). An insertion allocates nothing but the growth of the two.
///
/// Members keep the order in which they came until one leaves: the last takes its place. Owns
/// nothing. Not safe across threads.
template <class T> class PointerSet {
public:
  int size() const { return static_cast<int>(members_.size()); }
  T* operator[](int index) const { return members_[static_cast<std::size_t>(index)]; }

  bool contains(const T* member) const {
    return !table_.empty() && table_[FindCell(member)] != kFree;
  }

  /// False when it's in the set already.
  bool insert(T* member) {
    if (table_.size() <= 2 * members_.size())
      Grow();
    const std::size_t cell = FindCell(member);
    if (table_[cell] != kFree)
      return false;
    members_.push_back(member);
    table_[cell] = static_cast<std::uint32_t>(members_.size());
    return true;
  }

  /// False when it isn't in the set.
  bool erase(const T* member) {
    if (!contains(member))
      return false;
    const std::size_t cell = FindCell(member);
    const std::uint32_t place = table_[cell];
    Close(cell);
    T* const last = members_.back();
    if (last != member) {
      table_[FindCell(last)] = place;
      members_[place - 1] = last;
    }
    members_.pop_back();
    return true;
  }

private:
  static constexpr std::uint32_t kFree = 0; // else the place in the array, counted from 1
  static constexpr std::size_t kLeastCells = 8;

  std::size_t HomeOf(const T* member) const {
    // Fibonacci hashing: the upper half of the product depends on all bits of the address.
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(member) * 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>(mixed >> 32U) & (table_.size() - 1);
  }

  std::size_t NextTo(std::size_t cell) const { return (cell + 1) & (table_.size() - 1); }

  /// The cell of the member, or the free one where its search ends.
  std::size_t FindCell(const T* member) const {
    std::size_t cell = HomeOf(member);
    while (table_[cell] != kFree && members_[table_[cell] - 1] != member)
      cell = NextTo(cell);
    return cell;
  }

  void Grow() {
    table_.assign(std::max(kLeastCells, 2 * table_.size()), kFree);
    for (std::size_t i = 0; i < members_.size(); ++i) {
      std::size_t cell = HomeOf(members_[i]);
      while (table_[cell] != kFree)
        cell = NextTo(cell);
      table_[cell] = static_cast<std::uint32_t>(i + 1);
    }
  }

  /// Frees a cell, and moves those behind it up whose search would end there.
  void Close(std::size_t gap) {
    for (std::size_t cell = NextTo(gap); table_[cell] != kFree; cell = NextTo(cell)) {
      const std::size_t mask = table_.size() - 1;
      const std::size_t distance = (cell - HomeOf(members_[table_[cell] - 1])) & mask;
      if (distance < ((cell - gap) & mask))
        continue;
      table_[gap] = table_[cell];
      gap = cell;
    }
    table_[gap] = kFree;
  }

  std::vector<T*> members_;
  std::vector<std::uint32_t> table_; ///< A power of two of cells, or none.
};

} // namespace vorrel
