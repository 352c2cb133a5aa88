#include "kestan/style/stylecache.h"

#include "kestan/core/threadcontext.h"

namespace vorrel::kestan {

StyleCache* StyleCache::GetCurrent() {
  ThreadContext* context = ThreadContext::GetCurrent();
  if (!context)
    return nullptr;
  if (!context->styleCache)
    context->styleCache = std::make_unique<StyleCache>();
  return context->styleCache.get();
}

StyleSelector* StyleCache::Find(const Style& inlineStyle, const StyleSelector& referenced) const {
  const Style* last = inlineStyle_.get();
  StyleSelector* flattened = flattened_.get();
  if (!last || !flattened || referenced_.get() != &referenced)
    return nullptr;
  // One that is older than the inline style would be looked up again and again.
  const bool isCurrent = flattened->IsFlattenedAfter(*last) &&
                         flattened->IsFlattenedAfter(inlineStyle) &&
                         flattened->IsFlattenedAfter(referenced);
  return isCurrent && last->MergesLike(inlineStyle) ? flattened : nullptr;
}

void StyleCache::Set(Style& inlineStyle, StyleSelector& referenced, StyleSelector& flattened) {
  inlineStyle_.set(&inlineStyle);
  referenced_.set(&referenced);
  flattened_.set(&flattened);
}

} // namespace vorrel::kestan
