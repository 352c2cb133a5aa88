#include "tests/core/probe.h"

#include "kestan/core/enum.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "tests/core/probeschema.h"

namespace vorrel::kestan {

template class SchemaT<Probe, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Probe>;
template class ObjArrayField<Probe>;

std::atomic<int> Probe::s_alive{0};

ProbeSchema::ProbeSchema() : SchemaT("Probe", nullptr, Namespace::kKml) {
  count.SetDefault(0).SetBounds(-10, 10);
  ratio.SetDefault(0.5F);
  color.SetDefault(Color32());
  axis.SetDefault({});
  values.SetUndefinedOffset(OffsetOf(&Probe::undefined_));
}

Enum& ProbeSchema::Modes() {
  static Enum modes({{0, "off"}, {1, "on"}}, false);
  return modes;
}

Enum& ProbeSchema::Sides() {
  static Enum sides({{1, "left"}, {2, "right"}}, true);
  return sides;
}

const Schema& Probe::GetClassSchema() { return ProbeSchema::GetSingleton(); }

RefPtr<Probe> Probe::Make(const QString& id) {
  const auto object = GetClassSchema().CreateInstance(KmlId(id, "http://a/b.kml"), "", nullptr);
  return RefPtr<Probe>(static_cast<Probe*>(object.get()));
}

Probe::Probe(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  ++s_alive;
  if (notify)
    NotifyPostCreate();
}

Probe::~Probe() {
  NotifyPreDelete();
  --s_alive;
}

void Probe::NotifyFieldChanged(const Field& field) {
  specified_ |= field.GetMaskBit();
  ++notices_;
  SchemaObject::NotifyFieldChanged(field);
}

void Probe::CopyNonFieldStuff(const SchemaObject& src) {
  specified_ = src.GetFieldsSpecified(); // copying has marked all fields
  SchemaObject::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
