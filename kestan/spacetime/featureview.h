#pragma once

#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

class AbstractFeature;
class BoundingBoxViewSchema;
class FeatureViewSchema;
class PhotoOverlayViewSchema;
class TourViewSchema;

/// A view that shows a feature of the document. It refers to the feature, and keeps it alive, but
/// doesn't own it. What documents hold as views are others: these stand by themselves.
class KESTAN_EXPORT FeatureView : public AbstractView {
public:
  using ClassSchema = FeatureViewSchema;
  static const Schema& GetClassSchema();
  ~FeatureView() override;

  AbstractFeature* GetFeature() const;
  /// Takes a feature that this kind of view can show, or null, in place of the present one; another
  /// one changes nothing. Answers false where the view is left without a feature by that.
  virtual bool SetFeature(AbstractFeature* feature) = 0;

  void ContainExtents(float, float, double, double, double, double) override {}
  void ContainExtents(float, float, double, double, double, double, double, double) override {}
  bool IsAltitudeAbsolute() const override { return true; }
  AltitudeMode GetAltitudeMode() const override { return kAbsolute; }
  /// True for any view of the same feature.
  bool AlmostEqual(AbstractView* other) const override;
  void WriteKmlFields(WriteState& state) const override;

protected:
  FeatureView(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// `SetFeature` of a view that shows features of one class only.
  bool SetFeatureOf(const Schema& schema, AbstractFeature* feature);

  RefPtr<SchemaObject> feature_;

private:
  friend class FeatureViewSchema;
};

class KESTAN_EXPORT TourView final : public FeatureView {
public:
  using ClassSchema = TourViewSchema;
  static const Schema& GetClassSchema();
  TourView(const KmlId& id, const QString& baseUrl);
  ~TourView() override;

  bool SetFeature(AbstractFeature* feature) override;
};

class KESTAN_EXPORT PhotoOverlayView final : public FeatureView {
public:
  using ClassSchema = PhotoOverlayViewSchema;
  static const Schema& GetClassSchema();
  PhotoOverlayView(const KmlId& id, const QString& baseUrl);
  ~PhotoOverlayView() override;

  bool SetFeature(AbstractFeature* feature) override;
};

/// Shows any feature from above.
class KESTAN_EXPORT BoundingBoxView final : public FeatureView {
public:
  using ClassSchema = BoundingBoxViewSchema;
  static const Schema& GetClassSchema();
  BoundingBoxView(const KmlId& id, const QString& baseUrl);
  ~BoundingBoxView() override;

  bool SetFeature(AbstractFeature* feature) override;
};

} // namespace vorrel::kestan
