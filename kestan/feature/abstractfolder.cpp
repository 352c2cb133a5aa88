#include "kestan/feature/abstractfolder.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfolderschema.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/host/inlinedvector.h"
#include "kestan/style/icon.h"       // the child class, for the field table
#include "kestan/write/writestate.h" // how deep a tree may be

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<AbstractFolder, NoInstancePolicy, NoDerivedPolicy>;

namespace {

const AbstractFolderSchema& Fields() { return AbstractFolderSchema::GetSingleton(); }

/// The same objects for the array field, which knows no classes.
class ObjectSlice {
public:
  explicit ObjectSlice(const ArraySlice<RefPtr<AbstractFeature>>& features) {
    for (const RefPtr<AbstractFeature>& feature : features)
      objects_.push_back(feature);
  }
  operator ArraySlice<RefPtr<SchemaObject>>() { return {objects_.begin(), objects_.size()}; }

private:
  InlinedVector<RefPtr<SchemaObject>, 64> objects_;
};

} // namespace

AbstractFolderSchema::AbstractFolderSchema()
    : SchemaT("AbstractFolder", &AbstractFeature::GetClassSchema(), Namespace::kKml),
      icon(*this, QString(), Icon::GetClassSchema(), OffsetOf(&AbstractFolder::icon_)) {}

const Schema& AbstractFolder::GetClassSchema() { return AbstractFolderSchema::GetSingleton(); }

AbstractFolder::AbstractFolder(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {}

AbstractFolder::~AbstractFolder() = default;

/// By index and with a reference, since what an operation tells others may change the list.
template <class Op> void AbstractFolder::ForEachChild(Op op) const {
  const DeletionDeferrer deferrer;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (const RefPtr<AbstractFeature> child = children_[i])
      op(*child);
  }
}

/// Tells the children of a change in what they inherit.
template <class Op> void AbstractFolder::PassOn(Op op) {
  if (HandsDown())
    ForEachChild(op);
}

void AbstractFolder::SetIcon(Icon* icon) { Fields().icon.CheckSet(*this, icon); }

bool AbstractFolder::AddChild(AbstractFeature& child) {
  RefPtr<AbstractFeature> one(&child);
  return AddChildren({&one, 1}) == 1;
}

bool AbstractFolder::RemChild(AbstractFeature& child) {
  RefPtr<AbstractFeature> one(&child);
  return RemoveChildren({&one, 1}) == 1;
}

bool AbstractFolder::RemChild(int index) {
  AbstractFeature* const child = GetChild(index);
  return child && RemChild(*child);
}

void AbstractFolder::MoveAllChildren(AbstractFolder* from, AbstractFolder* to) {
  const DeletionDeferrer deferrer;
  InlinedVector<RefPtr<AbstractFeature>, 64> moving;
  for (const RefPtr<AbstractFeature>& child : from->children_) {
    if (child && Fields().children.Accepts(*to, *child))
      moving.push_back(child);
  }
  const ArraySlice<RefPtr<AbstractFeature>> slice(moving.begin(), moving.size());
  from->RemoveChildren(slice);
  to->AddChildren(slice);
}

void AbstractFolder::SortChildrenByName() {
  mmvector<RefPtr<AbstractFeature>> sorted;
  sorted.reserve(children_.size());
  std::copy_if(children_.begin(), children_.end(), std::back_inserter(sorted),
               [](const RefPtr<AbstractFeature>& child) { return bool(child); });
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const RefPtr<AbstractFeature>& a, const RefPtr<AbstractFeature>& b) {
                     return QString::compare(a->GetName(), b->GetName(), Qt::CaseInsensitive) < 0;
                   });
  if (sorted == children_)
    return;
  for (std::size_t i = 0; i < sorted.size(); ++i)
    sorted[i]->SetArrayIndex(static_cast<int>(i));
  children_.swap(sorted);
  NotifyFieldChanged(Fields().children);
}

void AbstractFolder::SetSyncState(int state) {
  if (syncState_ == state)
    return;
  syncState_ = state;
  NotifyFieldChanged(Fields().syncState);
}

void AbstractFolder::SetSyncProgress(std::uint32_t done, std::uint32_t total) {
  if (syncDone_ == done && syncTotal_ == total)
    return;
  syncDone_ = done;
  syncTotal_ = total;
  NotifyFieldChanged(Fields().syncProgress);
}

void AbstractFolder::GetElementsBySchema(const QString& name, mmvector<SchemaObject*>& out) const {
  const Schema* schema = Schema::FindNamedSchema(name, Namespace::kKml);
  if (!schema)
    schema = Schema::FindNamedSchema(name, Namespace::kExt);
  if (!schema)
    return;
  ForEachChild([&](const AbstractFeature& child) { child.FindBySchema(*schema, out); });
}

int AbstractFolder::RemoveChildren(const ArraySlice<RefPtr<AbstractFeature>>& children) {
  return Fields().children.RemoveMultiple(this, ObjectSlice(children));
}

int AbstractFolder::AddChildren(const ArraySlice<RefPtr<AbstractFeature>>& children) {
  return Fields().children.AddMultiple(this, ObjectSlice(children));
}

bool AbstractFolder::InsertChild(int index, AbstractFeature& child) {
  return Fields().children.insert(*this, &child, index);
}

int AbstractFolder::FindChild(const AbstractFeature& child) const {
  return Fields().children.FindObject(*this, child);
}

int AbstractFolder::GetChildCount() const { return static_cast<int>(children_.size()); }

AbstractFeature* AbstractFolder::GetChild(int index) const {
  return children_.at(static_cast<std::size_t>(index)).get();
}

void AbstractFolder::SetForceVisible(bool) {}

bool AbstractFolder::GetForceVisible() const { return false; }

void AbstractFolder::CollectStylesAndSchemas(WriteState& state) const {
  AbstractFeature::CollectStylesAndSchemas(state);
  CollectChildren(state);
}

void AbstractFolder::CollectChildren(WriteState& state) const {
  constexpr std::size_t kAhead = 8; // children lie anywhere in memory: asked for ahead of time
  state.SetIndent(state.indent() + 1);
  for (std::size_t i = 0; i < children_.size() && state.CheckDepth(); ++i) {
    if (i + kAhead < children_.size())
      __builtin_prefetch(children_[i + kAhead].get());
    if (children_[i])
      children_[i]->CollectStylesAndSchemas(state);
  }
  state.SetIndent(state.indent() - 1);
}

void AbstractFolder::NotifyInheritedRegionChanged() {
  const DeletionDeferrer deferrer;
  PassOn([](AbstractFeature& child) { child.UpdateInheritedRegion(); });
  AbstractFeature::NotifyInheritedRegionChanged();
}

void AbstractFolder::NotifyInheritedTimeChanged() {
  const DeletionDeferrer deferrer;
  PassOn([](AbstractFeature& child) { child.UpdateInheritedTime(); });
  AbstractFeature::NotifyInheritedTimeChanged();
}

void AbstractFolder::NotifyInheritedOpacityChanged() {
  const DeletionDeferrer deferrer;
  PassOn([](AbstractFeature& child) { child.UpdateInheritedOpacity(); });
  AbstractFeature::NotifyInheritedOpacityChanged();
}

void AbstractFolder::NotifyInheritedVisibilityChanged() {
  const DeletionDeferrer deferrer;
  PassOn([](AbstractFeature& child) { child.UpdateInheritedVisibility(); });
  AbstractFeature::NotifyInheritedVisibilityChanged();
}

void AbstractFolder::NotifyInheritedShouldNotifySubFieldChanged() {
  PassOn([](AbstractFeature& child) { child.UpdateInheritedShouldNotifySubFieldChanged(); });
}

void AbstractFolder::RequireParentInheritedVisibility(bool update) {
  ForEachChild([](AbstractFeature& child) { child.RequireParentInheritedVisibility(false); });
  AbstractFeature::RequireParentInheritedVisibility(update);
}

void AbstractFolder::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void AbstractFolder::Accept(GeometryVisitorConst* visitor) const {
  ForEachChild([visitor](const AbstractFeature& child) { child.Accept(visitor); });
}

void AbstractFolder::Accept(GeometryVisitor* visitor) {
  ForEachChild([visitor](AbstractFeature& child) { child.Accept(visitor); });
}

bool AbstractFolder::GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const {
  bool any = AbstractFeature::GetTimeRange(begin, end, instants, spans);
  ForEachChild([&](const AbstractFeature& child) {
    if (child.GetTimeRange(begin, end, instants, spans))
      any = true;
  });
  return any;
}

} // namespace vorrel::kestan
