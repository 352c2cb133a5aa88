#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/style.h"

#include <cstdint>

namespace vorrel::kestan {

/// The last flattening of a thread, for the next feature with the same styles.
///
/// Threads that draw one document ask for the same styles, and documents come and go meanwhile. So
/// the cache touches no object but its own: the inline style is a copy, and the referenced selector
/// an address, which means something for as long as no selector has gone.
class StyleCache {
public:
  /// That of the calling thread; null on a thread without a context.
  static StyleCache* GetCurrent();

  /// What the last flattening gave, if it was one of styles like these and is still right.
  StyleSelector* Find(const Style& inlineStyle, const StyleSelector& referenced) const;
  /// In a scope of `UnlistedObjects`, for the copy.
  void Set(const Style& inlineStyle, const StyleSelector& referenced, StyleSelector& flattened);

private:
  RefPtr<Style> inlineStyle_;
  const StyleSelector* referenced_ = nullptr; // never looked into
  std::uint32_t deathCount_ = 0;              // as long as it's this
  RefPtr<StyleSelector> flattened_;
};

} // namespace vorrel::kestan
