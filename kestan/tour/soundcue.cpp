#include "kestan/tour/soundcue.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/tour/soundcueschema.h"
#include "kestan/tour/tourprimitivevisitor.h"
#include "kestan/write/writestate.h"

#include <utility>

namespace vorrel::kestan {

template class SchemaT<SoundCue, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const SoundCueSchema& Fields() { return SoundCueSchema::GetSingleton(); }

} // namespace

SoundCueSchema::SoundCueSchema()
    : SchemaT("SoundCue", &TourPrimitive::GetClassSchema(), Namespace::kExt) {
  delayedStart.SetDefault(0.0);
}

const Schema& SoundCue::GetClassSchema() { return SoundCueSchema::GetSingleton(); }

SoundCue::SoundCue(const KmlId& id, const QString& baseUrl)
    : TourPrimitive(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

SoundCue::~SoundCue() { NotifyPreDelete(); }

void SoundCue::SetHref(const QString& href) { Fields().href.CheckSet(*this, href); }

QString SoundCue::GetAbsoluteUrl() const {
  return href_.isEmpty() ? QString() : MakeAbsoluteUrl(GetBaseUrl(), href_);
}

void SoundCue::SetDelayedStart(double seconds) { Fields().delayedStart.CheckSet(*this, seconds); }

bool SoundCue::IsHTMLAddress(const QString& url) const {
  for (const char* scheme : {"ftp:", "http:", "https:"}) {
    if (url.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
      return true;
  }
  return false;
}

void SoundCue::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void SoundCue::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

void SoundCue::WriteKml(WriteState& state) const {
  const bool travels = !state.fileName().isEmpty() && !IsHTMLAddress(href_);
  QString written = travels ? state.RegisterUrl(href_, GetAbsoluteUrl(), true, this) : href_;
  std::swap(href_, written);
  TourPrimitive::WriteKml(state);
  std::swap(href_, written);
}

} // namespace vorrel::kestan
