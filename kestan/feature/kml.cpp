#include "kestan/feature/kml.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/feature/kmlschema.h"
#include "kestan/host/tr.h"
#include "kestan/link/networklinkcontrol.h" // child classes, for the field table
#include "kestan/link/tarrowlink.h"
#include "kestan/theme/theme.h"

namespace vorrel::kestan {

template class SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy>;

KmlSchema::KmlSchema()
    : SchemaT("kml", nullptr, Namespace::kKml),
      link(*this, QString(), TarrowLink::GetClassSchema(), OffsetOf(&Kml::link_)),
      control(*this, QString(), NetworkLinkControl::GetClassSchema(), OffsetOf(&Kml::control_)),
      feature(*this, QString(), AbstractFeature::GetClassSchema(), OffsetOf(&Kml::feature_)),
      theme(*this, QString(), Theme::GetClassSchema(), OffsetOf(&Kml::theme_)) {}

const Schema& Kml::GetClassSchema() { return KmlSchema::GetSingleton(); }

Kml::Kml(const KmlId& id, const QString& baseUrl) : SchemaObject(GetClassSchema(), id, baseUrl) {
  SetBit(kBitInheritedNotifySubField, false);
  NotifyPostCreate();
}

Kml::~Kml() { NotifyPreDelete(); }

void Kml::WriteKml(WriteState& state) const {
  for (const Field* field : GetSchema().GetSerializedFields())
    WriteField(*field, state);
  if (!feature_) // which has been given what no class understands
    WriteUnknownFields(state);
}

void Kml::WriteStylesAndSchemas(WriteState& state, const QString& path) const {
  if (!feature_) {
    WriteKml(state);
    return;
  }
  for (const Field* field : GetSchema().GetSerializedFields()) {
    if (field == &KmlSchema::GetSingleton().feature)
      feature_->WriteStylesAndSchemas(state, path);
    else
      WriteField(*field, state);
  }
}

void Kml::NotifyFieldChanged(const Field& field) {
  const KmlSchema& fields = KmlSchema::GetSingleton();
  QString error;
  if (&field == &fields.feature) {
    if (seenFeature_ && feature_)
      error = tr("Only a single root feature allowed within <kml> tag");
    seenFeature_ = feature_ != nullptr;
  } else if (&field == &fields.theme) {
    if (seenTheme_ && theme_)
      error = tr("Only a single root theme allowed within <kml> tag");
    seenTheme_ = theme_ != nullptr;
  } else if (&field == &fields.hint) {
    SetHintTarget(static_cast<unsigned>(KmlSchema::GetHintTargetId(hint_)));
  }
  if (error.isEmpty())
    SchemaObject::NotifyFieldChanged(field);
  else
    ThreadContext::GetCurrent()->fatalText = error;
}

} // namespace vorrel::kestan
