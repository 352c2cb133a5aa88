#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class AnimatedUpdate;
class FlyTo;
class SoundCue;
class TourControl;
class TourPrimitive;
class Wait;

/// Does something that depends on the class of a primitive. A visit that isn't replaced does
/// nothing.
class KESTAN_EXPORT TourPrimitiveVisitor {
public:
  virtual ~TourPrimitiveVisitor();

  virtual void Visit(TourPrimitive&) {}
  virtual void Visit(FlyTo&) {}
  virtual void Visit(Wait&) {}
  virtual void Visit(TourControl&) {}
  virtual void Visit(SoundCue&) {}
  virtual void Visit(AnimatedUpdate&) {}
  virtual void ConstVisit(const TourPrimitive&) {}
  virtual void ConstVisit(const FlyTo&) {}
  virtual void ConstVisit(const Wait&) {}
  virtual void ConstVisit(const TourControl&) {}
  virtual void ConstVisit(const SoundCue&) {}
  virtual void ConstVisit(const AnimatedUpdate&) {}
};

} // namespace vorrel::kestan
