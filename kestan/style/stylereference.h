#pragma once

#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

/// What a reference of a `StyleMap::Pair` leads to. It keeps its target, or just knows it: counts
/// of maps that keep each other would never come to an end.
class StyleReference {
public:
  StyleSelector* get() const { return target_; }
  bool Keeps() const { return static_cast<bool>(keeper_); }

  /// Takes a target, and keeps it.
  void Set(StyleSelector& target) {
    target_ = &target;
    keeper_ = &target;
  }
  void SetKeeps(bool keeps) { keeper_ = keeps ? target_ : nullptr; }
  /// Lets go of the target. Null for one that is dying.
  RefPtr<StyleSelector> Release() {
    const bool isAlive = target_ && target_->GetRefCount() > 0;
    const RefPtr<StyleSelector> former(isAlive ? target_ : nullptr);
    target_ = nullptr;
    keeper_.reset();
    return former;
  }

private:
  StyleSelector* target_ = nullptr;
  RefPtr<StyleSelector> keeper_;
};

} // namespace vorrel::kestan
