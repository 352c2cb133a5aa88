#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/feature/igeometrycontainer.h"

#include <QString>

#include <memory>

namespace vorrel {
class DateTime;
}

namespace vorrel::kestan {

class AbstractFeatureSchema;
class AbstractFolder;
class AbstractView;
class ExtendedData;
class FeatureVisitor;
class Region;
class Snippet;
class Style;
class StyleSelector;
class TimePrimitive;

/// Base of all that can stand in the feature tree: placemarks, folders, links, overlays, tours.
///
/// Holds what they share, and keeps up to date what a feature inherits from those above it:
/// visibility, time, region and opacity.
class KESTAN_EXPORT AbstractFeature : public SchemaObject, public IGeometryContainer {
public:
  using ClassSchema = AbstractFeatureSchema;
  static const Schema& GetClassSchema();

  class Iterator;
  class VisibilityObserver;

  /// A state from 0 to 2 with which a client marks features.
  using ProcessingMode = int;

  ~AbstractFeature() override;

  const QString& GetName() const { return name_; }
  void SetName(const QString& name);
  /// Decodes `name` as UTF-8, else as ASCII.
  void SetName(const char* name, bool utf8);
  const QString& GetDescription() const { return description_; }
  const QString& GetAddress() const { return address_; }
  const QString& GetPhoneNumber() const { return phoneNumber_; }

  AbstractView* GetAbstractView() const { return abstractView_.get(); }
  TimePrimitive* GetTimePrimitive() const { return timePrimitive_.get(); }
  void SetTimePrimitive(TimePrimitive* time);
  Region* GetRegion() const { return region_.get(); }
  ExtendedData* GetExtendedData() const { return extendedData_.get(); }

  const QString& GetStyleUrl() const { return styleUrl_; }
  void SetStyleUrl(const QString& url);
  /// The `Style` or `StyleMap` child.
  StyleSelector* GetInlineStyleSelector() const { return inlineStyleSelector_.get(); }
  void SetInlineStyleSelector(StyleSelector* selector);
  /// What the style URL led to; null while it's open.
  StyleSelector* GetReferencedStyleSelector() const { return referencedStyleSelector_.get(); }
  /// Binds the feature to a shared style and rewrites the style URL accordingly; null unbinds.
  void SetReferencedStyleSelector(StyleSelector* selector);
  /// The inline `Style`; where there is none, a new one, also in place of a `StyleMap`.
  Style* InlineStyle();
  /// The style to draw with in `mode`, with every sub-style set or stood in for by its default.
  /// Null only while the library isn't initialised. It lives until the next change of what it's
  /// made of. Thread: any that has a context, one at a time for a feature; other threads may ask
  /// other features of the document meanwhile.
  const Style* getRenderStyle(int mode) const;
  /// The selector behind the render style.
  const StyleSelector* getRenderStyleSelector() const;
  /// True when the feature says how it looks highlighted.
  bool HasSpecifiedHighlightStyle() const;
  /// The style in which the feature is shown: 0 normal, 1 highlight.
  int GetStyleMode() const { return styleMode_; }
  void SetStyleMode(int mode);

  /// True when the feature has a snippet of the new form, be it an empty one.
  bool HasNewSnippet() const { return GetBit(kBitNewSnippet) || !snippet_.isEmpty(); }
  /// The short text of either form; the new form wins.
  QString GetSnippet() const;
  Snippet* GetSnippetObject() const { return snippetObject_.get(); }
  /// Takes a snippet of the old form in the place of whichever is there.
  void SetSnippetObject(Snippet* snippet);
  /// Lines of the snippet to show; 0 for a snippet that was left empty on purpose.
  int GetMaxSnippetLines() const;
  /// Changes the text in the form that the feature uses. An empty text doesn't make a snippet
  /// where there is none.
  void SetSnippetIfExists(const QString& text);

  bool IsOpen() const { return GetBit(kBitOpen); }
  void SetIsOpen(bool open);
  /// The feature's own wish; whether it can be seen is `isVisible`.
  bool GetVisibility() const { return GetBit(kBitVisibility); }
  /// The observers of visibility hear of a change on the main thread only, and not before the
  /// creation of the feature has been announced.
  void SetVisibility(bool visible);
  /// Hides a feature that finer ones replace; its own wish stays as it is.
  void SetHiddenByLod(bool hidden);
  bool GetForceVisible() const { return GetBit(kBitForceVisible); }
  /// Shows the feature whatever it inherits. Main thread: the observers are told in any case.
  void SetForceVisible(bool force);
  /// True when the feature is visible through all of its folders and at the present time.
  /// `opacity` and `region`, which may be null, receive what it inherits, in either case.
  bool isVisible(float* opacity = nullptr, Region** region = nullptr) const;
  /// Switches on the feature and all the folders above it.
  void EnsureVisible();
  bool GetBalloonVisibility() const { return GetBit(kBitBalloonVisibility); }

  float GetOpacity() const { return opacity_; }
  /// Own values combined with those of the folders above.
  float GetInheritedOpacity() const { return inheritedOpacity_; }
  TimePrimitive* GetInheritedTime() const { return inheritedTime_; }
  Region* GetInheritedRegion() const { return inheritedRegion_; }
  void UpdateInheritedTime();
  void UpdateInheritedRegion();
  void UpdateInheritedOpacity();

  /// The folder that holds the feature, or null.
  AbstractFolder* GetParent() const;
  /// Null without a folder and at the ends of its list.
  AbstractFeature* GetPreviousSiblingNode() const;
  AbstractFeature* GetNextSiblingNode() const;
  bool IsDescendantOf(const AbstractFolder& folder) const;
  bool IsSelfOrDescendantOf(const AbstractFolder& folder) const;
  /// Moves the feature to the end of a folder; null takes it out of its present one.
  void SetParent(AbstractFolder* folder);

  /// Widens the range by all visible features with a time that this thread has built, or that have
  /// come to it: on the main thread those of the whole globe. Arguments and answer are as for
  /// `GetTimeRange`, but the counters begin at 0.
  static bool GetWorldTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans);

  ProcessingMode GetProcessingMode() const;
  /// Sends no notice. Mode 0 leaves the higher of the two bits; another value than 0, 1 and 2
  /// changes nothing.
  void SetProcessingMode(ProcessingMode mode);
  /// A colour that tells features apart when they are picked from an image.
  std::uint32_t GetFalseColor() const;

  /// The text with each reference of the form `$[key]` filled in: `$[name]`, `$[id]`, and the keys
  /// of the extended data. Ends at the first reference that it can't fill in or that's malformed,
  /// and where a value holds its own reference, be it through others.
  QString ApplyEntityReplacement(const QString& text) const;

  /// Source of a description that is fetched apart. An empty URL drops it; another one drops the
  /// text.
  void SetRemoteDescriptionUrl(const QString& url);
  /// The URL must have been set.
  void SetRemoteDescriptionText(const QString& text);
  QString GetRemoteDescriptionUrl() const;
  QString GetRemoteDescriptionText() const;

  // Operations that features add, in the order of their slots.
  /// Reports the shared styles and the schemas that the feature needs in `state`'s output.
  virtual void CollectStylesAndSchemas(WriteState& state) const;
  virtual void NotifyInheritedRegionChanged();
  virtual void NotifyInheritedTimeChanged();
  virtual void NotifyInheritedOpacityChanged();
  virtual void UpdateRevisionId(long revision);
  virtual void accept(FeatureVisitor& visitor);
  void Accept(GeometryVisitorConst* visitor) const override = 0;
  void Accept(GeometryVisitor* visitor) override = 0;
  /// Widens the range from `begin` to `end`, undefined times at first, by the time of a visible
  /// feature; false when it has none. The counters, which may be null, count its kind of time.
  virtual bool GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const;
  virtual bool IsTimedFeature() const;

  void WriteKml(WriteState& state) const override;
  void OnUrlLoad(const StrField& field, SchemaObject* loaded) override;
  const Field* FindObject(const SchemaObject& child, int* index) const override;
  bool IsGiven(const Field& field) const override;
  void SetNotGiven(const Field& field) override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyInheritedVisibilityChanged() override;
  void NotifyOwnerChanged() override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteStylesAndSchemas(WriteState& state, const QString& path) const override;

protected:
  /// Programs that know the old form of the snippet only shall see the new text too.
  void UpdateOldSnippet() const;
  AbstractFeature(const Schema& schema, const KmlId& id, const QString& baseUrl);

  // Keep the registry of timed features, and the bit that mirrors it.
  static void s_add_timed_feature(AbstractFeature& feature);
  static void s_rem_timed_feature(AbstractFeature& feature);

private:
  friend class AbstractFeatureSchema;

  struct RemoteDescription {
    QString url;
    QString text;
  };

  void init();
  void ReleaseReferencedStyleSelector();
  void ReleaseFlattenedStyleSelector() const;
  void BindStyleSelector(StyleSelector* selector, const QString& url);
  const StyleSelector* UpdateRenderStyleSelector() const;
  void FlattenStyleSelectors() const;

  // What follows from a change, one operation a field.
  void OnStyleUrlChanged();
  void OnInlineStyleSelectorChanged();
  void OnVisibilityChanged();
  void OnSnippetChanged();
  void OnSnippetObjectChanged();
  void OnOpacityChanged();
  void OnTimePrimitiveChanged();
  void OnBalloonVisibilityChanged();

  QString name_;
  RefPtr<AbstractView> abstractView_;
  QString description_;
  QString snippet_;
  QString address_;
  QString phoneNumber_;
  RefPtr<Snippet> snippetObject_;
  RefPtr<TimePrimitive> timePrimitive_;
  RefPtr<Region> region_;
  QString styleUrl_;
  RefPtr<StyleSelector> inlineStyleSelector_;
  RefPtr<ExtendedData> extendedData_;
  float opacity_;
  float inheritedOpacity_;
  TimePrimitive* inheritedTime_; // its feature, here or above, counts it
  Region* inheritedRegion_;      // likewise
  RefPtr<StyleSelector> referencedStyleSelector_;
  mutable RefPtr<StyleSelector> flattenedStyleSelector_; // the inline style over the referenced one
  int styleMode_;
  std::unique_ptr<RemoteDescription> remoteDescription_;
};

} // namespace vorrel::kestan
