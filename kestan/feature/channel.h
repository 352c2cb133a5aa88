#pragma once

#include "kestan/feature/abstractfolder.h"

#include <memory>

namespace vorrel::kestan {

class ChannelSchema;

/// A folder for very many features, in no particular order, that come and go without a notice.
class KESTAN_EXPORT Channel final : public AbstractFolder {
public:
  using ClassSchema = ChannelSchema;
  static const Schema& GetClassSchema();

  /// The client's; the library doesn't look at it.
  struct ClientState {
    float value = 99.0F;
    bool first = false;
    bool second = false;
  };

  Channel(const KmlId& id, const QString& baseUrl);
  ~Channel() override;

  /// Levels of detail at which the features fade out. Null or no levels clear them.
  void SetLodFadeOutLevels(const float* levels, int count);
  /// 31 for an index without a level.
  float GetFadeOutLevel(int index) const;
  ClientState& clientState() { return clientState_; }

  // Remove in constant time: the last child takes the place of the one that goes.
  bool InternalRemoveChild(AbstractFeature& child);
  bool InternalRemoveChild(int index);

  int RemoveChildren(const ArraySlice<RefPtr<AbstractFeature>>& children) override;
  void CollectStylesAndSchemas(WriteState& state) const override;
  void accept(FeatureVisitor& visitor) override;
  void NotifyFieldChanged(const Field& field) override;

protected:
  const Field* Vacate(SchemaObject& child) override;

private:
  RefPtr<AbstractFeature> TakeOut(int index);

  ClientState clientState_;
  std::unique_ptr<float[]> fadeOutLevels_; // their number, then the levels
};

} // namespace vorrel::kestan
