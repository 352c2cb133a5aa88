#include "kestan/style/liststyle.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/liststyleschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<ListStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<ListStyle>;

namespace {

const ListStyleSchema& Fields() { return ListStyleSchema::GetSingleton(); }

} // namespace

ListStyleSchema::ListStyleSchema() : SchemaT("ListStyle", nullptr, Namespace::kKml) {
  bgColor.SetDefault(Color32(0x00FFFFFFU));
  maxSnippetLines.SetDefault(2);
}

const Schema& ListStyle::GetClassSchema() { return ListStyleSchema::GetSingleton(); }

ListStyle::ListStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : SubStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

ListStyle::~ListStyle() { NotifyPreDelete(); }

void ListStyle::SetListItemType(ListItemType type) {
  Fields().listItemType.CheckSet(*this, type, specified_);
}

void ListStyle::SetBgColor(const Color32& color) {
  Fields().bgColor.CheckSet(*this, color, specified_);
}

void ListStyle::SetMaxSnippetLines(int lines) {
  Fields().maxSnippetLines.CheckSet(*this, lines, specified_);
}

void ListStyle::AddItemIcon(ItemIcon& icon) { Fields().itemIcons.add(*this, &icon); }

void ListStyle::ClearItemIcons() {
  const DeletionDeferrer deferrer;
  Fields().itemIcons.setCount(*this, 0);
  NotifyFieldChanged(Fields().itemIcons);
}

ItemIcon* ListStyle::FindBestIcon(unsigned state) const {
  ItemIcon* best = nullptr;
  int bestValue = -1;
  for (const RefPtr<ItemIcon>& icon : itemIcons_) {
    const int value = icon ? icon->GetMatchValue(state) : -1;
    if (value > bestValue) {
      best = icon.get();
      bestValue = value;
    }
  }
  return best;
}

bool ListStyle::UnspecifyRedundantFields(const ListStyle&) { return specified_ == 0; }

void ListStyle::NotifyFieldChanged(const Field& field) {
  if (&field == &Fields().itemIcons)
    SimplifyItemIcons();
  SubStyle::NotifyFieldChanged(field);
}

void ListStyle::SimplifyItemIcons() {
  mmvector<int> stateless;
  unsigned claimed = 0;
  for (std::size_t i = itemIcons_.size(); i-- > 0;) {
    ItemIcon* icon = itemIcons_[i].get();
    if (!icon)
      continue;
    const unsigned left = icon->GetState() & ~claimed;
    claimed |= left;
    if (left == 0)
      stateless.push_back(static_cast<int>(i));
    else
      icon->SetState(left);
  }
  if (!stateless.empty())
    Fields().itemIcons.EraseMultiple(this, {stateless.data(), stateless.size()});
}

bool ListStyle::operator==(const ListStyle& other) const {
  return listItemType_ == other.listItemType_ && bgColor_ == other.bgColor_ &&
         maxSnippetLines_ == other.maxSnippetLines_ &&
         std::equal(itemIcons_.begin(), itemIcons_.end(), other.itemIcons_.begin(),
                    other.itemIcons_.end(),
                    [](const RefPtr<ItemIcon>& a, const RefPtr<ItemIcon>& b) {
                      return a == b || (a && b && a->HasEqualValue(*b));
                    });
}

} // namespace vorrel::kestan
