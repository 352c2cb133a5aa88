#include "kestan/style/finalstyle.h"

#include "kestan/style/styleschema.h"

namespace vorrel::kestan {

FinalStyle::FinalStyle()
    : Style(KmlId(), QString(), false), line_(KmlId(), QString(), false),
      label_(KmlId(), QString(), false), icon_(KmlId(), QString(), false),
      iconStack_(KmlId(), QString(), false), poly_(KmlId(), QString(), false),
      balloon_(KmlId(), QString(), false), list_(KmlId(), QString(), false) {
  ref(); // never given back: objects on the stack don't go with their last reference
}

FinalStyle::~FinalStyle() {
  StyleSchema::GetSingleton().ForEachPart([this](auto member) { (this->*member).reset(); });
}

template <class T>
void FinalStyle::Merge(RefPtr<T> Style::*member, T& target, const Style& base, const Style& over) {
  const T* b = (base.*member).get();
  const T* o = (over.*member).get();
  if (o && o->GetFieldsSpecified() == 0)
    o = nullptr;
  if (!b && !o)
    return;
  if (b && o)
    target.merge(*b, *o);
  else
    target.copy(b ? *b : *o, true, nullptr);
  target.ref(); // as above
  this->*member = &target;
}

void FinalStyle::MergeStyles(const Style& base, const Style& over) {
  Merge(&FinalStyle::lineStyle_, line_, base, over);
  Merge(&FinalStyle::labelStyle_, label_, base, over);
  Merge(&FinalStyle::iconStyle_, icon_, base, over);
  Merge(&FinalStyle::iconStackStyle_, iconStack_, base, over);
  Merge(&FinalStyle::polyStyle_, poly_, base, over);
  Merge(&FinalStyle::balloonStyle_, balloon_, base, over);
  Merge(&FinalStyle::listStyle_, list_, base, over);
  providerId_ = base.GetProviderId();
}

} // namespace vorrel::kestan
