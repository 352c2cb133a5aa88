#include "kestan/host/cellmanagerpool.h"

#include <algorithm>
#include <mutex>
#include <new>

namespace vorrel {

namespace {

constexpr std::size_t kAlignment = alignof(std::max_align_t);

} // namespace

CellManagerPool::CellManagerPool(std::size_t cellSize, std::size_t cellsPerBlock)
    : cellSize_((std::max(cellSize, sizeof(FreeCell)) + kAlignment - 1) / kAlignment * kAlignment),
      cellsPerBlock_(std::max<std::size_t>(cellsPerBlock, 1)) {}

CellManagerPool::~CellManagerPool() = default;

void* CellManagerPool::allocate() {
  const std::lock_guard<SpinLock> guard(lock_);
  if (!free_)
    AddBlock();
  FreeCell* const cell = free_;
  free_ = cell->next;
  return cell;
}

void CellManagerPool::free(void* cell) {
  if (!cell)
    return;
  const std::lock_guard<SpinLock> guard(lock_);
  free_ = ::new (cell) FreeCell{free_};
}

void CellManagerPool::AddBlock() {
  std::byte* const block =
      blocks_.emplace_back(std::make_unique<std::byte[]>(cellSize_ * cellsPerBlock_)).get();
  for (std::size_t i = cellsPerBlock_; i-- > 0;)
    free_ = ::new (static_cast<void*>(block + i * cellSize_)) FreeCell{free_};
}

} // namespace vorrel
