#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vorrel {

/// Set of pointers for many insertions and few questions. The members lie behind each other in an
/// array. An insertion only appends; the next question enters what came since the last one in a
/// table of places (open addressing, half full at most), and drops what was there already.
///
/// Members keep the order in which they came until one leaves: the last takes its place. Owns
/// nothing. Not safe across threads, questions included.
template <class T> class PointerSet {
public:
  int size() const {
    Settle();
    return static_cast<int>(members_.size());
  }
  T* operator[](int index) const {
    Settle();
    return members_[static_cast<std::size_t>(index)];
  }
  bool contains(const T* member) const {
    Settle();
    return table_[FindCell(member)] != kFree;
  }

  /// Changes nothing when it's in the set already.
  void insert(T* member) { members_.push_back(member); }

  /// Changes nothing when it isn't in the set.
  void erase(const T* member) {
    Settle();
    const std::size_t cell = FindCell(member);
    const std::uint32_t place = table_[cell];
    if (place == kFree)
      return;
    Close(cell);
    T* const last = members_.back();
    if (last != member) {
      table_[FindCell(last)] = place;
      members_[place - 1] = last;
    }
    members_.pop_back();
    --settled_;
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

  void Settle() const {
    if (settled_ == members_.size() && !table_.empty())
      return;
    std::size_t cells = std::max(kLeastCells, table_.size());
    while (cells < 2 * members_.size())
      cells *= 2;
    if (cells != table_.size()) {
      table_.assign(cells, kFree);
      settled_ = 0;
    }
    std::size_t end = settled_;
    for (std::size_t i = settled_; i < members_.size(); ++i) {
      std::uint32_t& place = table_[FindCell(members_[i])];
      if (place != kFree)
        continue;
      members_[end++] = members_[i];
      place = static_cast<std::uint32_t>(end);
    }
    members_.resize(end);
    settled_ = end;
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

  mutable std::vector<T*> members_;
  mutable std::vector<std::uint32_t> table_; // a power of two of cells, or none
  mutable std::size_t settled_ = 0;          // members in the table; the rest has come since
};

} // namespace vorrel
