#include "tests/write/samplestyle.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

template class SchemaT<SampleStyle, NewInstancePolicy, NoDerivedPolicy>;

SampleStyleSchema::SampleStyleSchema()
    : SchemaT("SampleStyle", &StyleSelector::GetClassSchema(), Namespace::kKml) {}

const Schema& SampleStyle::GetClassSchema() { return SampleStyleSchema::GetSingleton(); }

RefPtr<SampleStyle> SampleStyle::Make(const char* id, const char* url) {
  const auto object = GetClassSchema().CreateInstance(KmlId(id, url), QString(), nullptr);
  return RefPtr<SampleStyle>(static_cast<SampleStyle*>(object.get()));
}

SampleStyle::SampleStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : StyleSelector(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

SampleStyle::~SampleStyle() { NotifyPreDelete(); }

void SampleStyle::InternalCollectStyles(WriteState& state) const { state.AddStyle(*this); }

} // namespace vorrel::kestan
