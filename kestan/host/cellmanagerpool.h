#pragma once

#include "kestan/host/export.h"
#include "kestan/host/spinlock.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vorrel {

/// Cells of one size, taken from larger blocks, for many small objects of a class.
///
/// Freed cells are used again; the blocks go back to the heap when the pool ends, which must be
/// after its last cell was freed. Safe from all threads.
class KESTAN_EXPORT CellManagerPool {
public:
  /// `cellSize` is rounded up so that each cell is aligned for any object.
  explicit CellManagerPool(std::size_t cellSize, std::size_t cellsPerBlock = 64);
  ~CellManagerPool();
  CellManagerPool(const CellManagerPool&) = delete;
  CellManagerPool& operator=(const CellManagerPool&) = delete;

  void* allocate();
  void free(void* cell);

private:
  struct FreeCell {
    FreeCell* next;
  };

  void AddBlock();

  const std::size_t cellSize_;
  const std::size_t cellsPerBlock_;
  SpinLock lock_;
  FreeCell* free_ = nullptr;
  std::vector<std::unique_ptr<std::byte[]>> blocks_;
};

} // namespace vorrel
