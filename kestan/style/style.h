#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/styleselector.h"

#include <memory>

namespace vorrel::kestan {

class BalloonStyle;
class IconStackStyle;
class IconStyle;
class LabelStyle;
class LineStyle;
class ListStyle;
class PolyStyle;
class StyleSchema;

/// One look: how lines, areas, icons, labels, balloons and list entries are drawn.
class KESTAN_EXPORT Style : public StyleSelector {
public:
  using ClassSchema = StyleSchema;
  static const Schema& GetClassSchema();

  /// Document of the built-in styles, and the full URL of the default one.
  static const QString& GetRootStyleBase();
  static const QString& GetDefaultStyleUrl();
  // What stands in for a style that a feature doesn't have, that is on its way, and that can't be
  // had. Null while the library isn't initialised.
  static Style* GetDefaultStyle();
  static Style* GetFetchingStyle();
  static Style* GetFailedStyle();
  static Style* GetDefaultHighlightStyle();
  /// What a feature without a style shows in `mode`.
  static Style* GetDefaultStyle(int mode);

  /// The style with this id in the calling thread's hash, or null.
  static Style* find(const KmlId& id);
  static Style* find(const QString& url, const QString& id);
  /// The style with this id, else a new one.
  static RefPtr<Style> create(const KmlId& id, const QString& baseUrl, MemoryManager* manager);
  /// The same for the id that a URL holds; a copy of the default style for an empty one.
  static RefPtr<Style> GetStyleFromUrl(const QString& url);

  /// A style with the id of the default one takes that one's place.
  Style(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Style() override;

  // The own sub-style, or the shared default.
  const LineStyle* GetLineStyle() const;
  const LabelStyle* GetLabelStyle() const;
  const IconStyle* GetIconStyle() const;
  const IconStackStyle* GetIconStackStyle() const;
  const PolyStyle* GetPolyStyle() const;
  const BalloonStyle* GetBalloonStyle() const;
  const ListStyle* GetListStyle() const;
  // The own sub-style, which is made where there's none.
  LineStyle* GetLineStyle();
  LabelStyle* GetLabelStyle();
  IconStyle* GetIconStyle();
  IconStackStyle* GetIconStackStyle();
  PolyStyle* GetPolyStyle();
  BalloonStyle* GetBalloonStyle();
  ListStyle* GetListStyle();
  // Put a sub-style in, or with null take it out, without a notice.
  void _setLineStyle(LineStyle* style);
  void _setLabelStyle(LabelStyle* style);
  void _setIconStyle(IconStyle* style);
  void _setIconStackStyle(IconStackStyle* style);
  void _setPolyStyle(PolyStyle* style);
  void _setBalloonStyle(BalloonStyle* style);
  void _setListStyle(ListStyle* style);

  /// The client's number for where the style comes from.
  int GetProviderId() const { return providerId_; }

  /// A deep copy under a run-time URL.
  RefPtr<Style> Clone() const;
  /// A copy with another icon. Of a style with an id there's one for each icon.
  RefPtr<Style> CloneIcon(Icon& icon) const;
  /// The same for the highlight of that icon: a little larger.
  RefPtr<Style> CloneHighlightIcon(Icon& icon) const;

  /// Drops what says the same as `base`. True when no sub-style is left.
  bool UnspecifyRedundantFields(const Style& base);
  /// True when the two look the same. A missing sub-style is a default one.
  bool operator==(const Style& other) const;
  /// True when the two change any other style in the same way.
  bool MergesLike(const Style& other) const;

  void accept(StyleVisitor& visitor) override;
  RefPtr<StyleSelector> InternalFlatten(const StyleSelector* other, bool entered) const override;
  void InternalCollectStyles(WriteState& state) const override;
  const Style* InternalGetSelectedStyle(int mode) const override;

  /// Storage of the fields that only old documents have; made on demand.
  void* GetProxyStorage() const override;
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKml(WriteState& state) const override;

protected:
  int providerId_ = 0;
  struct Deprecated;
  mutable std::unique_ptr<Deprecated> deprecated_;
  RefPtr<LineStyle> lineStyle_;
  RefPtr<PolyStyle> polyStyle_;
  RefPtr<IconStyle> iconStyle_;
  RefPtr<IconStackStyle> iconStackStyle_;
  RefPtr<LabelStyle> labelStyle_;
  RefPtr<BalloonStyle> balloonStyle_;
  RefPtr<ListStyle> listStyle_;

private:
  friend class StyleSchema;

  // The same for each class of sub-styles.
  template <class T> const T* Get() const;
  template <class T> T* GetOrCreate();
  template <class T> void Set(T* style);

  Deprecated& GetDeprecated() const;
  void ApplyDeprecated(const Field& field);
  RefPtr<Style> CloneIcon(const QString& role, Icon& icon, bool* isNew) const;
};

} // namespace vorrel::kestan
