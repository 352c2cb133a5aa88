#pragma once

#include "kestan/spacetime/abstractview.h"
#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class FlyToSchema;

/// How a flight begins and ends: at rest, or without a stop.
enum FlyToMode { kFlyToBounce = 0, kFlyToSmooth = 1 };

/// A flight to a view.
class KESTAN_EXPORT FlyTo final : public TourPrimitive {
public:
  using ClassSchema = FlyToSchema;
  static const Schema& GetClassSchema();
  FlyTo(const KmlId& id, const QString& baseUrl);
  ~FlyTo() override;

  /// May be null.
  AbstractView* GetView() const { return view_.get(); }
  void setView(AbstractView* view);
  FlyToMode GetInterpMode() const { return static_cast<FlyToMode>(flyToMode_); }
  void SetInterpMode(FlyToMode mode);

  void Accept(TourPrimitiveVisitor& visitor) override;
  void ConstAccept(TourPrimitiveVisitor& visitor) const override;

private:
  friend class FlyToSchema;

  int flyToMode_ = kFlyToBounce;
  RefPtr<AbstractView> view_;
};

} // namespace vorrel::kestan
