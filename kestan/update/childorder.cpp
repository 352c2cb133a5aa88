#include "kestan/update/childorder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vorrel::kestan {

ChildOrder::ChildOrder(int count) {
  blocks_.emplace_back();
  blocks_.back().runs = std::make_unique<Runs>();
  if (count > 0)
    InsertRun({}, {0, count, {}});
}

void ChildOrder::Insert(int place, SchemaObject& child) {
  Position position;
  int ahead = 0;
  if (place >= 0) {
    while (position.block < blocks_.size() && ahead + blocks_[position.block].count < place)
      ahead += blocks_[position.block++].count;
  }
  if (place < 0 || position.block == blocks_.size()) {
    position.block = blocks_.size() - 1;
    position.run = blocks_.back().runs->size();
  } else {
    const Runs& runs = *blocks_[position.block].runs;
    while (position.run < runs.size() && ahead + runs[position.run].count <= place)
      ahead += runs[position.run++].count;
    position.offset = place - ahead;
  }
  Split(position);
  InsertRun(position, {-1, 1, RefPtr<SchemaObject>(&child)});
}

void ChildOrder::Remove(int element) {
  Position position;
  if (!Find(element, position))
    return;
  Split(position);
  Run& run = (*blocks_[position.block].runs)[position.run];
  if (run.count == 1) {
    EraseRun(position);
  } else {
    ++run.first;
    --run.count;
    --blocks_[position.block].count;
  }
}

void ChildOrder::Remove(const SchemaObject& child) {
  Position position;
  if (Find(child, position))
    EraseRun(position);
}

void ChildOrder::Replace(const SchemaObject& child, SchemaObject& other) {
  Position position;
  if (!Find(child, position))
    return;
  homes_.erase(&child);
  const Runs& runs = *blocks_[position.block].runs;
  homes_[&other] = &runs;
  blocks_[position.block].runs->at(position.run).child = RefPtr<SchemaObject>(&other);
}

int ChildOrder::FindPlace(int element) const {
  Position position;
  return Find(element, position) ? position.place + position.offset : -1;
}

int ChildOrder::FindPlace(const SchemaObject& child) const {
  Position position;
  return Find(child, position) ? position.place : -1;
}

bool ChildOrder::Find(int element, Position& position) const {
  // Elements keep their order, so that those of the blocks ascend.
  while (position.block < blocks_.size() && blocks_[position.block].element < element)
    position.place += blocks_[position.block++].count;
  if (position.block == blocks_.size())
    return false;
  for (const Run& run : *blocks_[position.block].runs) {
    if (!run.child && element < run.first + run.count) {
      position.offset = element - run.first;
      return position.offset >= 0;
    }
    position.place += run.count;
    ++position.run;
  }
  return false;
}

bool ChildOrder::Find(const SchemaObject& child, Position& position) const {
  const auto home = homes_.find(&child);
  if (home == homes_.end())
    return false;
  while (blocks_[position.block].runs.get() != home->second)
    position.place += blocks_[position.block++].count;
  for (const Run& run : *home->second) {
    if (run.child.get() == &child)
      return true;
    position.place += run.count;
    ++position.run;
  }
  return false;
}

void ChildOrder::Split(Position& position) {
  if (position.offset == 0)
    return;
  Block& block = blocks_[position.block];
  Run& run = (*block.runs)[position.run];
  const Run rest{run.first + position.offset, run.count - position.offset, {}};
  run.count = position.offset;
  block.runs->insert(std::next(block.runs->begin(), static_cast<int>(++position.run)), rest);
  position.offset = 0;
}

void ChildOrder::InsertRun(const Position& position, Run run) {
  Block& block = blocks_[position.block];
  block.count += run.count;
  if (run.child)
    homes_[run.child.get()] = block.runs.get();
  else
    block.element = std::max(block.element, run.first + run.count - 1);
  block.runs->insert(std::next(block.runs->begin(), static_cast<int>(position.run)),
                     std::move(run));
  if (block.runs->size() > kMaxRuns)
    Halve(position.block);
}

void ChildOrder::EraseRun(const Position& position) {
  Block& block = blocks_[position.block];
  const auto run = std::next(block.runs->begin(), static_cast<int>(position.run));
  homes_.erase(run->child.get());
  block.count -= run->count;
  block.runs->erase(run);
  if (block.runs->empty() && blocks_.size() > 1)
    blocks_.erase(std::next(blocks_.begin(), static_cast<int>(position.block)));
}

void ChildOrder::Halve(std::size_t place) {
  Runs& runs = *blocks_[place].runs;
  const auto middle = std::next(runs.begin(), static_cast<int>(runs.size() / 2));
  Block second;
  second.runs =
      std::make_unique<Runs>(std::make_move_iterator(middle), std::make_move_iterator(runs.end()));
  runs.erase(middle, runs.end());
  for (const Run& run : *second.runs) {
    if (run.child)
      homes_[run.child.get()] = second.runs.get();
  }
  blocks_.insert(std::next(blocks_.begin(), static_cast<int>(place) + 1), std::move(second));
  Count(blocks_[place]);
  Count(blocks_[place + 1]);
}

void ChildOrder::Count(Block& block) {
  block.count = 0;
  block.element = -1;
  for (const Run& run : *block.runs) {
    block.count += run.count;
    if (!run.child)
      block.element = run.first + run.count - 1;
  }
}

} // namespace vorrel::kestan
