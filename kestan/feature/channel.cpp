#include "kestan/feature/channel.h"

#include "kestan/core/childmove.h"
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
  return InternalRemoveChild(FindChild(child));
}

bool Channel::InternalRemoveChild(int index) {
  if (index < 0 || index >= GetChildCount())
    return false;
  ChildMove move;
  if (const RefPtr<AbstractFeature> child = TakeOut(index))
    move.LetGo(child, *this);
  move.Tell();
  return true;
}

/// The last child takes the place of the one that goes.
RefPtr<AbstractFeature> Channel::TakeOut(int index) {
  RefPtr<AbstractFeature>& slot = children_[static_cast<std::size_t>(index)];
  RefPtr<AbstractFeature> child = std::move(slot);
  if (&slot != &children_.back()) {
    slot = std::move(children_.back());
    if (slot)
      slot->SetArrayIndex(index);
  }
  children_.pop_back();
  return child;
}

int Channel::RemoveChildren(const ArraySlice<RefPtr<AbstractFeature>>& children) {
  int count = 0;
  ChildMove move;
  for (const RefPtr<AbstractFeature>& child : children) {
    const int index = child ? FindChild(*child) : -1;
    if (index < 0)
      continue;
    move.LetGo(TakeOut(index), *this);
    ++count;
  }
  move.Tell();
  return count;
}

const Field* Channel::Vacate(SchemaObject& child) {
  const AbstractFolderSchema& fields = AbstractFolderSchema::GetSingleton();
  const int index = fields.children.FindObject(*this, child);
  if (index < 0)
    return AbstractFolder::Vacate(child);
  TakeOut(index);
  return &fields.children;
}

void Channel::CollectStylesAndSchemas(WriteState&) const {}

void Channel::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void Channel::NotifyFieldChanged(const Field& field) {
  if (&field != &AbstractFolderSchema::GetSingleton().children)
    AbstractFolder::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
