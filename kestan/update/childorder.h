#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace vorrel::kestan {

/// The order that an array of children will have once those that come and go have done so. The
/// array itself stays as it is meanwhile: its elements are known by their present indices.
///
/// Holds runs of elements, by blocks, so that a change costs about the same in an array of any
/// length, and nothing for elements beside which nothing changes.
class ChildOrder {
public:
  /// Of an array with `count` elements.
  explicit ChildOrder(int count);

  /// Puts a child that comes to the place `place`; a negative one, or one beyond the end, appends.
  void Insert(int place, SchemaObject& child);
  /// Takes an element of the array out, or a child that came.
  void Remove(int element);
  void Remove(const SchemaObject& child);
  /// Has another object stand for a child that came.
  void Replace(const SchemaObject& child, SchemaObject& other);

  /// The place of an element, or of a child that came; -1 for one that was taken out.
  int FindPlace(int element) const;
  int FindPlace(const SchemaObject& child) const;

  /// Calls `visit(child, before)` for each child that comes, in order; `before` elements of the
  /// array stay ahead of it.
  template <class Visit> void ForEachNew(Visit visit) const {
    int before = 0;
    for (const Block& block : blocks_) {
      for (const Run& run : *block.runs) {
        if (run.child)
          visit(*run.child, before);
        else
          before += run.count;
      }
    }
  }

private:
  /// Elements that follow each other, or one child that comes.
  struct Run {
    int first;
    int count;
    RefPtr<SchemaObject> child; ///< Null for elements.
  };
  using Runs = mmvector<Run>;
  struct Block {
    int count = 0;    ///< Of places.
    int element = -1; ///< The last one in it; -1 for none.
    std::unique_ptr<Runs> runs;
  };
  struct Position {
    std::size_t block = 0;
    std::size_t run = 0;
    int offset = 0; ///< In the run.
    int place = 0;  ///< Of the beginning of the run.
  };

  static constexpr std::size_t kMaxRuns = 512;

  bool Find(int element, Position& position) const;
  bool Find(const SchemaObject& child, Position& position) const;
  /// Has a run begin at the position, which is moved to it.
  void Split(Position& position);
  void InsertRun(const Position& position, Run run);
  void EraseRun(const Position& position);
  void Count(Block& block);
  void Halve(std::size_t place);

  mmvector<Block> blocks_; ///< None is empty but for the only one.
  std::unordered_map<const SchemaObject*, const Runs*> homes_; ///< Of the children that come.
};

} // namespace vorrel::kestan
