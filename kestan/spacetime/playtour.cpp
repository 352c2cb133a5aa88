#include "kestan/spacetime/playtour.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/playtourschema.h"

namespace vorrel::kestan {

template class SchemaT<PlayTour, NewInstancePolicy, NoDerivedPolicy>;

PlayTourSchema::PlayTourSchema()
    : SchemaT("PlayTour", &AbstractView::GetClassSchema(), Namespace::kExt) {}

const Schema& PlayTour::GetClassSchema() { return PlayTourSchema::GetSingleton(); }

PlayTour::PlayTour(const KmlId& id, const QString& baseUrl)
    : AbstractView(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

PlayTour::~PlayTour() { NotifyPreDelete(); }

const QString& PlayTour::href() const {
  if (hrefPending_) {
    answer_ = MakeAbsoluteUrl(GetBaseUrl(), href_);
    hrefPending_ = false;
  }
  return answer_;
}

bool PlayTour::AlmostEqual(AbstractView* other) const {
  return other && other->isOfType(GetClassSchema()) &&
         href() == static_cast<const PlayTour&>(*other).href();
}

void PlayTour::NotifyFieldChanged(const Field& field) {
  if (!hrefPending_ && &field == &PlayTourSchema::GetSingleton().href)
    answer_ = href_;
  AbstractView::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
