#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/pointerset.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace vorrel::kestan {

class Icon;
class Style;
class StyleSelectorSchema;
class StyleVisitor;

/// Which of its looks a feature shows.
enum StyleStateMode { kStyleNormal = 0, kStyleHighlight = 1 };

/// What a feature looks like, or a choice between several looks. Shared by the features that refer
/// to it: each of them is an owner.
class KESTAN_EXPORT StyleSelector : public SchemaObject {
public:
  using ClassSchema = StyleSelectorSchema;
  static const Schema& GetClassSchema();
  ~StyleSelector() override;

  /// Make and release the shared default styles; the library's start and stop.
  static void Initialize();
  static void Shutdown();

  using SchemaObject::find;
  /// The selector with this id in the calling thread's hash, or null.
  static StyleSelector* find(const KmlId& id);

  /// The built-in style that a "root://styles" id describes: a base style, with one icon or with
  /// one for each look. An id that describes none gives a copy of the default style.
  static RefPtr<StyleSelector> resolve(const KmlId& id);
  /// The base style `id` with the icons of an old number; with number 0, with tiles of the palette
  /// that `name` is the URL of.
  static RefPtr<StyleSelector> resolve(const KmlId& id, unsigned short oldIconId,
                                       const QString& name);
  /// The base style `id` with these icons.
  static RefPtr<StyleSelector> resolve(const KmlId& id, Icon& normal, Icon& highlight);
  /// True for the URL of something built in: it's a name of its own, and travels as it is.
  static bool IsBuiltInUrl(const QString& url);
  /// True where `resolve` makes the same style again of the text of a reference alone.
  bool IsMadeFrom(const QString& url) const;
  /// The URL that names this selector in a document under `baseUrl`: `present` itself, in the same
  /// memory, when it says so already.
  QString MakeStyleUrl(const QString& baseUrl, const QString& present) const;

  /// Of a flattened selector: the count of changes when it was made, and whether `source` has been
  /// as it is since then.
  void SetFlattenRevision(std::uint32_t revision) { flattenRevision_ = revision; }
  bool IsFlattenedAfter(const StyleSelector& source) const {
    return static_cast<std::int32_t>(flattenRevision_ - source.GetRevision()) >= 0;
  }

  /// Counts the selectors of all documents that have gone. While it stays, an address means one
  /// selector.
  static std::uint32_t GetDeathCount() { return s_deaths_.load(std::memory_order_relaxed); }

  // Operations that selectors add, in the order of their slots.
  virtual void accept(StyleVisitor& visitor);
  virtual void apply() const {}
  /// A new selector of this one's shape with `other`, which may be null, merged in. Without
  /// `entered`, `other` lies over this one; with it, this one lies over `other`, a `Style`.
  virtual RefPtr<StyleSelector> InternalFlatten(const StyleSelector* other, bool entered) const = 0;
  /// Reports this selector, and those that it leads to, for the output of `state`.
  virtual void InternalCollectStyles(WriteState& state) const = 0;
  /// The style for `mode`. Null when the selector says nothing about it.
  virtual const Style* InternalGetSelectedStyle(int mode) const = 0;

  void AddOwner(SchemaObject& newOwner) override;
  bool HasManyOwners() const override { return true; }
  void RemOwner(SchemaObject& former) override;
  bool HasOwner(const SchemaObject& object) const override;
  int GetOwnerCount() const override;
  SchemaObject* GetOwner(int index) const override;
  SchemaObject* GetHome() const override { return home_; }
  /// A shared selector takes no state from those that it belongs to.
  void NotifyOwnerChanged() override {}
  Document* GetOwnerDocument() const override { return nullptr; }
  /// A new id may be one that is waited for.
  void NotifyFieldChanged(const Field& field) override;
  /// Tells each owner. A change that comes by here again on its way up isn't told twice.
  void NotifySubFieldChanged(SchemaObject& changed, const Field& field,
                             VisitedObjects& visited) override;

protected:
  StyleSelector(const Schema& schema, const KmlId& id, const QString& baseUrl);

  void EnterPlace(SchemaObject& owner, int index) override;
  void LeavePlace(SchemaObject& owner) override;

private:
  void Join(SchemaObject& newOwner);

  using OwnerSet = PointerSet<SchemaObject>;

  SchemaObject* home_ = nullptr;
  std::unique_ptr<OwnerSet> owners_; // where there are several; else the plain owner, if any
  std::uint32_t flattenRevision_ = 0;
  const bool isUnlisted_; // made for a look, and in no document

  static std::atomic<std::uint32_t> s_deaths_;
};

} // namespace vorrel::kestan
