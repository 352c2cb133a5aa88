#include "kestan/style/itemicon.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/itemiconschema.h"
#include "kestan/write/writestate.h" // the image's name in the output

#include <bitset>

namespace vorrel::kestan {

template class SchemaT<ItemIcon, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<ItemIcon>;

namespace {

const ItemIconSchema& Fields() { return ItemIconSchema::GetSingleton(); }

/// The bits of a state that decide how well an icon fits.
constexpr unsigned kMatchedBits = 0xFF;

} // namespace

ItemIconSchema::ItemIconSchema()
    : SchemaT("ItemIcon", nullptr, Namespace::kKml), states_({{ItemIcon::kOpen, "open"},
                                                              {ItemIcon::kClosed, "closed"},
                                                              {ItemIcon::kError, "error"},
                                                              {ItemIcon::kFetching0, "fetching0"},
                                                              {ItemIcon::kFetching1, "fetching1"},
                                                              {ItemIcon::kFetching2, "fetching2"}},
                                                             true) {}

const Schema& ItemIcon::GetClassSchema() { return ItemIconSchema::GetSingleton(); }

ItemIcon::ItemIcon(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

ItemIcon::~ItemIcon() { NotifyPreDelete(); }

void ItemIcon::SetState(unsigned mask) { Fields().state.CheckSet(*this, static_cast<int>(mask)); }

void ItemIcon::SetHref(const QString& href) { Fields().href.CheckSet(*this, href); }

QString ItemIcon::GetAbsoluteUrl() const { return MakeAbsoluteUrl(GetBaseUrl(), href_); }

int ItemIcon::GetMatchValue(unsigned state) const {
  return static_cast<int>(std::bitset<8>(state & GetState() & kMatchedBits).count());
}

bool ItemIcon::HasEqualValue(const ItemIcon& other) const {
  return state_ == other.state_ && href_ == other.href_ &&
         GetAbsoluteUrl() == other.GetAbsoluteUrl();
}

void ItemIcon::WriteKml(WriteState& state) const {
  const QString href = href_;
  href_ = state.RegisterUrl(href, GetAbsoluteUrl(), true, this);
  SchemaObject::WriteKml(state);
  href_ = href;
}

} // namespace vorrel::kestan
