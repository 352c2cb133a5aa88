#pragma once

#include "kestan/core/watcher.h"
#include "kestan/style/style.h"

namespace vorrel::kestan {

/// The last flattening of a thread, for the next feature with the same styles.
class StyleCache {
public:
  /// That of the calling thread; null on a thread without a context.
  static StyleCache* GetCurrent();

  /// What the last flattening gave, if it was one of styles like these and is still right.
  StyleSelector* Find(const Style& inlineStyle, const StyleSelector& referenced) const;
  void Set(Style& inlineStyle, StyleSelector& referenced, StyleSelector& flattened);

private:
  Watcher<Style> inlineStyle_;
  Watcher<StyleSelector> referenced_;
  Watcher<StyleSelector> flattened_;
};

} // namespace vorrel::kestan
