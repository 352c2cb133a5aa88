#pragma once

#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class AbstractFeature;
class AnimatedUpdateSchema;
class Update;

/// Changes of a document that come about while the tour goes on.
class KESTAN_EXPORT AnimatedUpdate final : public TourPrimitive {
public:
  using ClassSchema = AnimatedUpdateSchema;
  static const Schema& GetClassSchema();
  AnimatedUpdate(const KmlId& id, const QString& baseUrl);
  ~AnimatedUpdate() override;

  /// `content` is that of the `Update` element, of which `targetHref` is the target; `rawHref` is
  /// the target's text as it's to be written, or null.
  static RefPtr<AnimatedUpdate> CreateUpdate(const QString& targetHref, const QString& rawHref,
                                             const QString& content, double duration);
  /// Has a field of a feature go to `value`, a text as in a document. A feature without an id gets
  /// one. The update counts as of the feature's document. Null without a feature.
  static RefPtr<AnimatedUpdate> CreateUpdate(AbstractFeature* feature, const QString& fieldName,
                                             const QString& value, double duration,
                                             const QString& rawHref);

  /// May be null.
  Update* GetUpdate() const { return update_.get(); }
  /// Seconds from the turn of the update to the change.
  double GetDelayedStart() const { return delayedStart_; }
  void SetDelayedStart(double seconds);

  /// For who plays the tour, when the turn has come: finds what is to change. From then on
  /// `Update::ApplyEdits` takes it to any fraction of its way, forward and back. Each call makes
  /// edits of its own, which stay as long as the update. What can't be done is passed over without
  /// a report.
  void SetStart();

  void Accept(TourPrimitiveVisitor& visitor) override;
  void ConstAccept(TourPrimitiveVisitor& visitor) const override;

private:
  friend class AnimatedUpdateSchema;

  RefPtr<Update> update_;
  double delayedStart_ = 0.0;
};

} // namespace vorrel::kestan
