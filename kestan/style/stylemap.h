#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/styleselector.h"

#include <QString>

namespace vorrel::kestan {

class StyleMapSchema;
struct StyleSource;

/// A choice between looks by what the feature's state is: usually one for normal and one for
/// highlight.
///
/// Maps may refer to each other, in loops too. A walk over them ends with the default style where
/// it would go round.
class KESTAN_EXPORT StyleMap final : public StyleSelector {
public:
  using ClassSchema = StyleMapSchema;
  static const Schema& GetClassSchema();

  class Pair;

  /// The object as a map; null for anything else.
  static const StyleMap* As(const SchemaObject* object);
  static StyleMap* As(SchemaObject* object);

  /// The key of a pair for a mode, and the mode of a key: empty and -1 for any other.
  static QString GetKeyOf(int mode);
  static int GetModeOf(const QString& key);

  /// Document of the built-in maps.
  static const QString& GetRootStyleMapBase();
  /// The URL of maps that belongs to a URL of styles: its first "styles" turned into "styleMaps".
  /// Empty when there's none.
  static QString GetStyleMapBase(const QString& url);
  /// Null while the library isn't initialised.
  static StyleMap* GetDefaultStyleMap();

  /// The map with this id in the calling thread's hash, or null.
  static StyleMap* find(const KmlId& id);
  static StyleMap* find(const QString& url, const QString& id);
  /// The map with this id, else a new one. Null for an empty id.
  static RefPtr<StyleMap> create(const KmlId& id, const QString& baseUrl, MemoryManager* manager);
  /// A new map with these two looks.
  static RefPtr<StyleMap> create(const KmlId& id, const QString& baseUrl, Style& normal,
                                 Style& highlight, MemoryManager* manager);
  /// The map of a style with one icon for each look; there's one for each two icons.
  static RefPtr<StyleMap> create(const Style& style, Icon& normal, Icon& highlight);

  StyleMap(const KmlId& id, const QString& baseUrl, bool notify = true);
  StyleMap(const Style& style, Icon& normal, Icon& highlight, const KmlId& id,
           const QString& baseUrl);
  ~StyleMap() override;

  const mmvector<RefPtr<Pair>>& GetPairs() const { return pairs_; }
  /// The first pair for `mode`, or null. `key` receives the key of the mode, where it has one.
  Pair* GetStyleMapPair(StyleStateMode mode, QString& key) const;
  /// Puts a style into the pair of `mode`, which is made where there's none.
  void setStyle(StyleStateMode mode, Style& style);

  void accept(StyleVisitor& visitor) override;
  /// A map with exactly the two looks, each merged to a single style. One that nobody says anything
  /// about has a pair without a style, and shows the default.
  RefPtr<StyleSelector> InternalFlatten(const StyleSelector* other, bool entered) const override;
  void InternalCollectStyles(WriteState& state) const override;
  /// Reports what the map leads to, but not the map.
  void CollectReferences(WriteState& state, bool isInPlace) const;
  const Style* InternalGetSelectedStyle(int mode) const override;
  /// Follows the maps from this one to the style for `mode`, and tells the way. Without a style
  /// where a map on the way says nothing about the mode.
  StyleSource Select(int mode) const;

protected:
  bool FindKeeper() override;
  void LeaveOwners() override;

  /// A reference that doesn't keep its target begins to do so when nobody else does any more, and
  /// it is in use.
  void RemOwner(SchemaObject& former) override;

private:
  friend class StyleMapSchema;

  const Pair* FindPair(int state) const;
  void AddPair(StyleStateMode mode, Style& style);
  RefPtr<StyleSelector> FlattenLook(int mode, const StyleSelector* other, bool entered) const;

  // Maps that refer to each other.
  mmvector<StyleMap*> FindKeptMaps(int maxPairs) const;
  bool MayKeep(const StyleMap& other) const;
  Pair* FindUser(bool isWanted, bool* isUsed) const;
  bool IsKeptWithout(const StyleMap& other) const;
  void EndRings();

  mmvector<RefPtr<Pair>> pairs_;
  bool isInline_ = false;    // it is, or was, a pair's own
  bool mayBeInRing_ = false; // it was in one that a pair keeps
};

} // namespace vorrel::kestan
