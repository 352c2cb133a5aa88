#pragma once

#include "kestan/host/memory.h"
#include "kestan/host/pointerset.h"
#include "kestan/host/refptr.h"

#include <unordered_map>

namespace vorrel::kestan {

class AbstractFeature;
class AbstractFolder;
class SchemaObject;

/// Features that an update removes. They leave their folders together, since each that leaves alone
/// makes all behind it move up.
class Removals {
public:
  Removals();
  Removals(const Removals&) = delete;
  Removals& operator=(const Removals&) = delete;
  /// Removes what is still there.
  ~Removals();

  /// Takes note of a feature, which has no effect for one outside of a folder.
  void Add(AbstractFeature& feature);
  /// True for an object that has been removed as far as the update knows: it, or what it stands in,
  /// was added.
  bool Contains(const SchemaObject& object) const;
  /// Removes the features of one folder, or all. Everybody is told.
  void RemoveFrom(AbstractFolder& folder);
  void RemoveAll();

private:
  /// Of one folder.
  struct Group {
    RefPtr<AbstractFolder> folder;
    mmvector<RefPtr<AbstractFeature>> features;
  };

  static void Remove(Group group);

  mmvector<Group> groups_; ///< In the order in which folders lost their first feature.
  std::unordered_map<const AbstractFolder*, std::size_t> places_;
  PointerSet<const SchemaObject> removed_;
};

} // namespace vorrel::kestan
