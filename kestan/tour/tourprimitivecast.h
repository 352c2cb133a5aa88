#pragma once

#include "kestan/tour/tourprimitivevisitor.h"

namespace vorrel::kestan {

/// Turns a primitive into one of its class: each answers null for null, and for another class.
class KESTAN_EXPORT TourPrimitiveCast final : private TourPrimitiveVisitor {
public:
  static const FlyTo* CastToFlyTo(const TourPrimitive* primitive);
  static FlyTo* CastToFlyTo(TourPrimitive* primitive);
  static const Wait* CastToWait(const TourPrimitive* primitive);
  static Wait* CastToWait(TourPrimitive* primitive);
  static const TourControl* CastToTourControl(const TourPrimitive* primitive);
  static TourControl* CastToTourControl(TourPrimitive* primitive);
  static const SoundCue* CastToSoundCue(const TourPrimitive* primitive);
  static SoundCue* CastToSoundCue(TourPrimitive* primitive);
  static const AnimatedUpdate* CastToAnimatedUpdate(const TourPrimitive* primitive);
  static AnimatedUpdate* CastToAnimatedUpdate(TourPrimitive* primitive);

private:
  enum Kind { kFlyTo, kWait, kTourControl, kSoundCue, kAnimatedUpdate };

  explicit TourPrimitiveCast(Kind target) : target_(target) {}

  template <class T> static const T* Cast(const TourPrimitive* primitive, Kind target);
  void Take(const TourPrimitive& primitive, Kind kind) {
    if (kind == target_)
      result_ = &primitive;
  }

  using TourPrimitiveVisitor::ConstVisit;
  void ConstVisit(const FlyTo& primitive) override;
  void ConstVisit(const Wait& primitive) override;
  void ConstVisit(const TourControl& primitive) override;
  void ConstVisit(const SoundCue& primitive) override;
  void ConstVisit(const AnimatedUpdate& primitive) override;

  const TourPrimitive* result_ = nullptr;
  const Kind target_;
};

} // namespace vorrel::kestan
