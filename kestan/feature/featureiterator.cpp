#include "kestan/feature/featureiterator.h"

#include "kestan/feature/abstractfolder.h"
#include "kestan/link/networklink.h" // where a walk may stop
#include "kestan/style/liststyle.h"  // which folders hide what they hold
#include "kestan/style/style.h"

namespace vorrel::kestan {

using Iterator = AbstractFeature::Iterator;

Iterator::DefaultFilterOp Iterator::s_default_no_filter;

Iterator::FilterOp::~FilterOp() = default;

void Iterator::FilterOp::init(AbstractFeature*) {}

unsigned Iterator::DefaultFilterOp::ProcessFeature(AbstractFeature*) { return 0; }

void Iterator::BasicFilter::init(AbstractFeature* root) {
  if (root && (params_ & kSameDocument))
    url_ = root->GetKmlId().url;
}

unsigned Iterator::BasicFilter::ProcessFeature(AbstractFeature* feature) {
  const QString& url = feature->GetUrl();
  if ((params_ & kSameDocument) && !url.isEmpty() && url != url_)
    return kPassOver | kSkipChildren;
  if ((params_ & ~kSameDocument) == 0 || !feature->isOfType(AbstractFolder::GetClassSchema()))
    return 0;
  const Style* const style = feature->getRenderStyle(feature->GetStyleMode());
  const ListStyle* list = style ? style->GetListStyle() : nullptr;
  if (!list)
    list = ListStyle::GetDefaultListStyle();
  const bool hides = list && list->GetListItemType() == ListStyle::kCheckHideChildren;
  const bool isLink = feature->isOfType(NetworkLink::GetClassSchema());
  if (((params_ & kHonourHideChildren) && hides) || ((params_ & kStopAtNetworkLinks) && isLink))
    return kSkipChildren;
  const bool isEmpty = static_cast<AbstractFolder*>(feature)->GetChildCount() == 0;
  return (params_ & kLeavesOnly) && !hides && !isEmpty ? kPassOver : 0U;
}

Iterator::Iterator(AbstractFeature* root, FilterOp& filter)
    : filter_(filter), current_(root), root_(root) {
  filter_.init(root);
  Judge();
  if (verdict_ & kPassOver)
    next();
}

void Iterator::Judge() {
  AbstractFeature* const feature = GetFeature();
  verdict_ = feature ? filter_.ProcessFeature(feature) : 0U;
}

void Iterator::next() {
  do {
    NextFeature();
    Judge();
  } while (verdict_ & kPassOver);
}

void Iterator::NextFeature() {
  AbstractFeature* feature = GetFeature();
  if (feature && !(verdict_ & kSkipChildren) &&
      feature->isOfType(AbstractFolder::GetClassSchema())) {
    const auto& folder = static_cast<const AbstractFolder&>(*feature);
    if (folder.GetChildCount() > 0) {
      ++depth_;
      current_.set(folder.GetChild(0));
      return;
    }
  }
  // Up, but never above the root, wherever the feature has been moved meanwhile.
  for (; feature && feature != root_ && depth_ > 0; --depth_) {
    if (AbstractFeature* const sibling = feature->GetNextSiblingNode()) {
      current_.set(sibling);
      return;
    }
    feature = feature->GetParent();
  }
  current_.set(nullptr);
}

} // namespace vorrel::kestan
