#pragma once

#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class TourControlSchema;

enum TourControlAction { kTourPause = 0 };

/// Stops the tour until the user goes on with it.
class KESTAN_EXPORT TourControl final : public TourPrimitive {
public:
  using ClassSchema = TourControlSchema;
  static const Schema& GetClassSchema();
  TourControl(const KmlId& id, const QString& baseUrl);
  ~TourControl() override;

  TourControlAction GetAction() const { return static_cast<TourControlAction>(playMode_); }
  void SetAction(TourControlAction action);

  void Accept(TourPrimitiveVisitor& visitor) override;
  void ConstAccept(TourPrimitiveVisitor& visitor) const override;

private:
  friend class TourControlSchema;

  int playMode_ = kTourPause;
};

} // namespace vorrel::kestan
