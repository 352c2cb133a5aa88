#include "kestan/tour/tour.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/tour/tourprimitive.h"
#include "kestan/tour/tourschema.h"

namespace vorrel::kestan {

template class SchemaT<Tour, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const TourSchema& Fields() { return TourSchema::GetSingleton(); }

} // namespace

void PlaylistField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const SchemaObject* const list = GetObject(object, -1);
  const bool isMadeUp = list && object.GetBit(kBitWasRead) && !list->GetBit(kBitWasRead) &&
                        static_cast<const Playlist&>(*list).GetPrimitives().empty();
  if (!isMadeUp)
    ObjField::WriteKml(object, state);
}

TourSchema::TourSchema()
    : SchemaT("Tour", &AbstractFeature::GetClassSchema(), Namespace::kExt),
      modes_({{kTourInteractive, QStringLiteral("interactive")},
              {kTourAutopilot, QStringLiteral("autopilot")},
              {kTourRealtime, QStringLiteral("realtime")}},
             false) {}

const Schema& Tour::GetClassSchema() { return TourSchema::GetSingleton(); }

Tour::Tour(const KmlId& id, const QString& baseUrl)
    : AbstractFeature(GetClassSchema(), id, baseUrl) {
  const RefPtr<Playlist> list(new Playlist(KmlId(QString(), GetUrl()), GetBaseUrl(), false));
  Fields().playlist.Replace(*this, list.get());
  NotifyPostCreate();
}

Tour::~Tour() { NotifyPreDelete(); }

void Tour::SetTourMode(TourMode mode) { Fields().tourMode.CheckSet(*this, mode); }

double Tour::GetDuration() const {
  double seconds = 0.0;
  if (playlist_) {
    for (const auto& primitive : playlist_->GetPrimitives())
      seconds += primitive ? primitive->GetDuration() : 0.0;
  }
  return seconds;
}

void Tour::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
