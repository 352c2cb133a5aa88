#pragma once

#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class WaitSchema;

/// A rest.
class KESTAN_EXPORT Wait final : public TourPrimitive {
public:
  using ClassSchema = WaitSchema;
  static const Schema& GetClassSchema();
  Wait(const KmlId& id, const QString& baseUrl);
  ~Wait() override;

  void Accept(TourPrimitiveVisitor& visitor) override;
  void ConstAccept(TourPrimitiveVisitor& visitor) const override;
};

} // namespace vorrel::kestan
