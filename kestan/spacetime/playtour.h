#pragma once

#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

class PlayTourSchema;

/// A view that plays a tour, which it names by its URL.
class KESTAN_EXPORT PlayTour final : public AbstractView {
public:
  using ClassSchema = PlayTourSchema;
  static const Schema& GetClassSchema();
  PlayTour(const KmlId& id, const QString& baseUrl);
  ~PlayTour() override;

  /// The URL, made absolute by the first call; what the field is set to after that comes as it is.
  const QString& href() const;

  void ContainExtents(float, float, double, double, double, double) override {}
  void ContainExtents(float, float, double, double, double, double, double, double) override {}
  bool IsAltitudeAbsolute() const override { return false; }
  AltitudeMode GetAltitudeMode() const override { return kClampToGround; }
  bool AlmostEqual(AbstractView* other) const override;

  void NotifyFieldChanged(const Field& field) override;

private:
  friend class PlayTourSchema;

  QString href_;                    ///< As it was read or set, and is written.
  mutable QString answer_;          ///< Of `href`.
  mutable bool hrefPending_ = true; ///< There's no answer yet.
};

} // namespace vorrel::kestan
