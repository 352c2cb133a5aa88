#pragma once

#include "kestan/feature/abstractfeature.h"
#include "kestan/host/arrayslice.h"

namespace vorrel::kestan {

class AbstractFolderSchema;
class Icon;

/// Base of the features that hold features, in a fixed order.
///
/// A folder owns its children. What they inherit follows from it, and it passes visitors and
/// changes of the inherited values on to them in order.
class KESTAN_EXPORT AbstractFolder : public AbstractFeature {
public:
  using ClassSchema = AbstractFolderSchema;
  static const Schema& GetClassSchema();
  ~AbstractFolder() override;

  Icon* GetIcon() const { return icon_.get(); }
  void SetIcon(Icon* icon);

  /// Puts a feature behind the last child, taking it out of its former folder. False for one that
  /// is here already, and for a folder that this one lies in.
  bool AddChild(AbstractFeature& child);
  /// False when the feature isn't a child.
  bool RemChild(AbstractFeature& child);
  /// Throws `std::out_of_range` for an index out of range.
  bool RemChild(int index);
  /// Moves all children of `from` behind those of `to`, with one notice each.
  static void MoveAllChildren(AbstractFolder* from, AbstractFolder* to);
  /// Sorts by name without regard to case; equal names keep their order. A sorted folder sends no
  /// notice.
  void SortChildrenByName();
  // How far a client has brought the folder in step with a service.
  int GetSyncState() const { return syncState_; }
  void SetSyncState(int state);
  std::uint32_t GetSyncDone() const { return syncDone_; }
  std::uint32_t GetSyncTotal() const { return syncTotal_; }
  void SetSyncProgress(std::uint32_t done, std::uint32_t total);

  /// Appends all objects below the folder whose class has this element name.
  void GetElementsBySchema(const QString& name, mmvector<SchemaObject*>& out) const;

  // Operations that folders add, in the order of their slots.
  /// Both pass over features that are children already, or that aren't, and send one notice for
  /// all; they answer the number of children that went or came.
  virtual int RemoveChildren(const ArraySlice<RefPtr<AbstractFeature>>& children);
  virtual int AddChildren(const ArraySlice<RefPtr<AbstractFeature>>& children);
  /// Puts a feature before the child at `index`, or moves a child there. An index that is negative
  /// or beyond the end appends, which a child that is here already refuses.
  virtual bool InsertChild(int index, AbstractFeature& child);
  /// The place of a child, or -1.
  virtual int FindChild(const AbstractFeature& child) const;
  virtual int GetChildCount() const;
  /// Throws `std::out_of_range` for an index out of range.
  virtual AbstractFeature* GetChild(int index) const;
  // Folders have no force-visible state.
  virtual void SetForceVisible(bool force);
  virtual bool GetForceVisible() const;

  void CollectStylesAndSchemas(WriteState& state) const override;
  void NotifyInheritedRegionChanged() override;
  void NotifyInheritedTimeChanged() override;
  void NotifyInheritedOpacityChanged() override;
  void accept(FeatureVisitor& visitor) override;
  void Accept(GeometryVisitorConst* visitor) const override;
  void Accept(GeometryVisitor* visitor) override;
  bool GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const override;
  void RequireParentInheritedVisibility(bool update) override;
  void NotifyInheritedVisibilityChanged() override;
  void NotifyInheritedShouldNotifySubFieldChanged() override;

protected:
  AbstractFolder(const Schema& schema, const KmlId& id, const QString& baseUrl);

  void CollectChildren(WriteState& state) const;

  mmvector<RefPtr<AbstractFeature>> children_;

private:
  friend class AbstractFolderSchema;

  template <class Op> void ForEachChild(Op op) const;
  template <class Op> void PassOn(Op op);

  RefPtr<Icon> icon_;
  int syncState_ = -1;
  std::uint32_t syncDone_ = 0;
  std::uint32_t syncTotal_ = 0;
};

} // namespace vorrel::kestan
