#pragma once

#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <unordered_set>

namespace vorrel::kestan {

class StyleSelector;

/// A scope in which many selectors may change, such as the reading of a document. The owners of a
/// selector hear of its changes once, when the outermost batch of the thread ends: a map that is
/// read with as many pairs as owners would tell them so often that it takes time by the square.
class StyleClimbBatch {
public:
  StyleClimbBatch();
  StyleClimbBatch(const StyleClimbBatch&) = delete;
  StyleClimbBatch& operator=(const StyleClimbBatch&) = delete;
  ~StyleClimbBatch();

  /// True when the owners of the selector will be told at the end, and need not be told now.
  static bool Takes(StyleSelector& selector);

private:
  StyleClimbBatch* const outer_;
  mmvector<RefPtr<StyleSelector>> taken_;
  std::unordered_set<const StyleSelector*> known_; // those that are in `taken_`
};

} // namespace vorrel::kestan
