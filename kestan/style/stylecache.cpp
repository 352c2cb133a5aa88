#include "kestan/style/stylecache.h"

#include "kestan/core/threadcontext.h"

namespace vorrel::kestan {

StyleCache* StyleCache::GetCurrent() {
  ThreadContext* context = ThreadContext::GetCurrent();
  if (!context)
    return nullptr;
  if (!context->styleCache)
    context->styleCache = std::make_shared<StyleCache>();
  return context->styleCache.get();
}

StyleSelector* StyleCache::Find(const Style& inlineStyle, const StyleSelector& referenced) const {
  if (!flattened_ || referenced_ != &referenced || deathCount_ != StyleSelector::GetDeathCount())
    return nullptr;
  // One that is older than the inline style would be looked up again and again.
  const bool isCurrent =
      flattened_->IsFlattenedAfter(inlineStyle) && flattened_->IsFlattenedAfter(referenced);
  return isCurrent && inlineStyle_->MergesLike(inlineStyle) ? flattened_.get() : nullptr;
}

void StyleCache::Set(const Style& inlineStyle, const StyleSelector& referenced,
                     StyleSelector& flattened) {
  inlineStyle_ = inlineStyle.Clone();
  referenced_ = &referenced;
  deathCount_ = StyleSelector::GetDeathCount();
  flattened_ = &flattened;
}

} // namespace vorrel::kestan
