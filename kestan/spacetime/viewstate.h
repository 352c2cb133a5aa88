#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class RenderStateSchema;
class ViewStateSchema;

/// What a view can switch on and off. A number of its own each, no bit.
enum RenderOption {
  kSunlight = 1,
  kHistoricalImagery = 2,
  kStreetView = 3,
};

/// One switch: the element `gx:option`.
class KESTAN_EXPORT RenderState final : public SchemaObject {
public:
  using ClassSchema = RenderStateSchema;
  static const Schema& GetClassSchema();
  RenderState(const KmlId& id, const QString& baseUrl);
  ~RenderState() override;

  /// A `RenderOption`; 0 where none was given that has a name.
  int GetName() const { return name_; }
  bool IsEnabled() const { return enabled_; }

private:
  friend class RenderStateSchema;

  int name_ = 0;
  bool enabled_ = true;
};

/// The switches of a view: the element `gx:ViewerOptions`.
class KESTAN_EXPORT ViewState final : public SchemaObject {
public:
  using ClassSchema = ViewStateSchema;
  static const Schema& GetClassSchema();
  ViewState(const KmlId& id, const QString& baseUrl);
  ~ViewState() override;

  int GetRenderStateCount() const { return static_cast<int>(renderStates_.size()); }
  /// Null outside of the range.
  RenderState* GetRenderState(int index) const;
  /// The first switch of that name, or -1.
  int FindRenderState(int option) const;
  /// False for null, and where there's a switch of the same name.
  bool AddRenderState(RenderState* state);
  bool RemRenderState(int index);
  bool RemRenderState(RenderState* state);
  /// The sum of 1 << option over the switches that are on.
  int GetIntRepresentation() const;

private:
  friend class ViewStateSchema;

  mmvector<RefPtr<RenderState>> renderStates_;
};

} // namespace vorrel::kestan
