#include "kestan/feature/channel.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfolderschema.h"
#include "kestan/feature/channelschema.h"
#include "kestan/feature/featurevisitor.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<Channel, NewInstancePolicy, NoDerivedPolicy>;

ChannelSchema::ChannelSchema()
    : SchemaT("Channel", &AbstractFolder::GetClassSchema(), Namespace::kKml) {}

const Schema& Channel::GetClassSchema() { return ChannelSchema::GetSingleton(); }

Channel::Channel(const KmlId& id, const QString& baseUrl)
    : AbstractFolder(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Channel::~Channel() { NotifyPreDelete(); }

void Channel::SetLodFadeOutLevels(const float* levels, int count) {
  fadeOutLevels_.reset();
  if (!levels || count <= 0)
    return;
  fadeOutLevels_ = std::make_unique<float[]>(static_cast<std::size_t>(count) + 1);
  fadeOutLevels_[0] = static_cast<float>(count);
  std::copy_n(levels, count, &fadeOutLevels_[1]);
}

float Channel::GetFadeOutLevel(int index) const {
  constexpr float kNeverFades = 31.0F;
  if (!fadeOutLevels_ || index < 0 || static_cast<float>(index) >= fadeOutLevels_[0])
    return kNeverFades;
  return fadeOutLevels_[static_cast<std::size_t>(index) + 1];
}

bool Channel::InternalRemoveChild(AbstractFeature& child) {
  return child.HasOwner(*this) && InternalRemoveChild(child.GetArrayIndex());
}

bool Channel::InternalRemoveChild(int index) {
  if (index < 0 || index >= GetChildCount())
    return false;
  RefPtr<AbstractFeature>& slot = children_[static_cast<std::size_t>(index)];
  if (!slot || slot->GetArrayIndex() != index)
    return false;
  const RefPtr<AbstractFeature> child = std::move(slot);
  if (&slot != &children_.back()) {
    slot = std::move(children_.back());
    if (slot)
      slot->SetArrayIndex(index);
  }
  children_.pop_back();
  child->RemArrayOwner(*this, index);
  return true;
}

int Channel::RemoveChildren(const ArraySlice<RefPtr<AbstractFeature>>& children) {
  int count = 0;
  for (const RefPtr<AbstractFeature>& child : children)
    count += InternalRemoveChild(*child);
  return count;
}

void Channel::CollectStylesAndSchemas(WriteState&) const {}

void Channel::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void Channel::stolen(SchemaObject& child) {
  if (!child.isOfType(AbstractFeature::GetClassSchema()) ||
      !InternalRemoveChild(static_cast<AbstractFeature&>(child)))
    AbstractFolder::stolen(child);
}

void Channel::NotifyFieldChanged(const Field& field) {
  if (&field != &AbstractFolderSchema::GetSingleton().children)
    AbstractFolder::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
