#pragma once

#include "kestan/core/color32.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/host/net.h"
#include "kestan/host/vec2.h"

namespace vorrel::kestan {

class AbstractOverlaySchema;
class Icon;

/// Base of the features that show an image.
///
/// The library neither fetches the image nor draws it: the client tells what became of the fetch,
/// and how large the image is. None of that is written.
class KESTAN_EXPORT AbstractOverlay : public AbstractFeature {
public:
  using ClassSchema = AbstractOverlaySchema;
  static const Schema& GetClassSchema();
  ~AbstractOverlay() override;

  /// The image; null without one.
  Icon* GetIcon() const { return icon_.get(); }
  /// While the fetch of the former image goes on, `FetchObserver` hears that it's cancelled.
  void SetIcon(Icon* icon);
  Color32 GetColor() const { return color_; }
  int GetDrawOrder() const { return drawOrder_; }
  /// Seconds; the older form of the refresh mode and interval of the image's link.
  int GetRefreshPeriod() const { return refreshPeriod_; }
  /// Asks whoever watches the image's link to fetch it again.
  void refresh();

  net::FetchState GetFetchState() const { return fetchState_; }
  const QString& GetFetchErrorText() const { return fetchErrorText_; }
  /// The client's report on a fetch; observers of the overlay, and all of `FetchObserver`, hear of
  /// another state. A text that comes with the present state is passed over.
  void SetFetchState(net::FetchState state, const QString& text);
  /// In pixels; -1 for what the client hasn't told.
  const Vec2<int>& GetImageSize() const { return imageSize_; }
  void SetImageSize(const Vec2<int>& size);

  /// Has the creation observers hear of the overlay again.
  virtual void ReNotifyPostCreate();

  void accept(FeatureVisitor& visitor) override;
  // There's no shape in an overlay.
  void Accept(GeometryVisitorConst*) const override {}
  void Accept(GeometryVisitor*) override {}
  void NotifyFieldChanged(const Field& field) override;

protected:
  AbstractOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl);

  void LeaveOwners() override;

private:
  friend class AbstractOverlaySchema;

  void OnIconChanged();

  net::FetchState fetchState_ = net::kFetchNone;
  RefPtr<Icon> icon_;
  RefPtr<Icon> activeIcon_; // that the client has last heard of
  Color32 color_{0xFFFFFFFF};
  int drawOrder_ = 0;
  int refreshPeriod_ = 0;
  Vec2<int> imageSize_{-1, -1};
  QString fetchErrorText_;
  bool hasRefreshPeriod_ = false; // the element that is being read has one
};

} // namespace vorrel::kestan
