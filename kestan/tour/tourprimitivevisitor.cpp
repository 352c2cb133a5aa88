#include "kestan/tour/tourprimitivevisitor.h"

#include "kestan/tour/animatedupdate.h"
#include "kestan/tour/flyto.h"
#include "kestan/tour/soundcue.h"
#include "kestan/tour/tourcontrol.h"
#include "kestan/tour/tourprimitivecast.h"
#include "kestan/tour/wait.h"

namespace vorrel::kestan {

TourPrimitiveVisitor::~TourPrimitiveVisitor() = default;

template <class T> const T* TourPrimitiveCast::Cast(const TourPrimitive* primitive, Kind target) {
  TourPrimitiveCast cast(target);
  if (primitive)
    primitive->ConstAccept(cast);
  return static_cast<const T*>(cast.result_);
}

void TourPrimitiveCast::ConstVisit(const FlyTo& primitive) { Take(primitive, kFlyTo); }

void TourPrimitiveCast::ConstVisit(const Wait& primitive) { Take(primitive, kWait); }

void TourPrimitiveCast::ConstVisit(const TourControl& primitive) { Take(primitive, kTourControl); }

void TourPrimitiveCast::ConstVisit(const SoundCue& primitive) { Take(primitive, kSoundCue); }

void TourPrimitiveCast::ConstVisit(const AnimatedUpdate& primitive) {
  Take(primitive, kAnimatedUpdate);
}

const FlyTo* TourPrimitiveCast::CastToFlyTo(const TourPrimitive* primitive) {
  return Cast<FlyTo>(primitive, kFlyTo);
}

FlyTo* TourPrimitiveCast::CastToFlyTo(TourPrimitive* primitive) {
  return const_cast<FlyTo*>(Cast<FlyTo>(primitive, kFlyTo));
}

const Wait* TourPrimitiveCast::CastToWait(const TourPrimitive* primitive) {
  return Cast<Wait>(primitive, kWait);
}

Wait* TourPrimitiveCast::CastToWait(TourPrimitive* primitive) {
  return const_cast<Wait*>(Cast<Wait>(primitive, kWait));
}

const TourControl* TourPrimitiveCast::CastToTourControl(const TourPrimitive* primitive) {
  return Cast<TourControl>(primitive, kTourControl);
}

TourControl* TourPrimitiveCast::CastToTourControl(TourPrimitive* primitive) {
  return const_cast<TourControl*>(Cast<TourControl>(primitive, kTourControl));
}

const SoundCue* TourPrimitiveCast::CastToSoundCue(const TourPrimitive* primitive) {
  return Cast<SoundCue>(primitive, kSoundCue);
}

SoundCue* TourPrimitiveCast::CastToSoundCue(TourPrimitive* primitive) {
  return const_cast<SoundCue*>(Cast<SoundCue>(primitive, kSoundCue));
}

const AnimatedUpdate* TourPrimitiveCast::CastToAnimatedUpdate(const TourPrimitive* primitive) {
  return Cast<AnimatedUpdate>(primitive, kAnimatedUpdate);
}

AnimatedUpdate* TourPrimitiveCast::CastToAnimatedUpdate(TourPrimitive* primitive) {
  return const_cast<AnimatedUpdate*>(Cast<AnimatedUpdate>(primitive, kAnimatedUpdate));
}

} // namespace vorrel::kestan
