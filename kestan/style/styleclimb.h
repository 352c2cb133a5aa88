#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/inlinedvector.h"
#include "kestan/host/refptr.h"

#include <unordered_set>

namespace vorrel::kestan {

class StyleSelector;

/// One change on its way up through selectors that refer to each other. It's taken from one to the
/// next in a queue, so that neither depth nor loops nor many ways to one place matter.
class StyleClimb {
public:
  StyleClimb(SchemaObject& changed, const Field& field, VisitedObjects& visited);
  StyleClimb(const StyleClimb&) = delete;
  StyleClimb& operator=(const StyleClimb&) = delete;
  ~StyleClimb();

  /// The climb that a notice with these arguments belongs to, or null.
  static StyleClimb* Find(const VisitedObjects& visited);

  /// A selector is queued once.
  void Add(StyleSelector& selector);
  /// Tells the owners of all that is queued, and of what comes to it meanwhile.
  void Run();

private:
  struct Entry {
    StyleSelector* selector;
    RefPtr<StyleSelector> kept;
  };

  /// So many entries are searched one by one.
  static constexpr std::size_t kSmallQueue = 16;

  bool Contains(StyleSelector& selector) const;
  void TellOwners(StyleSelector& selector);

  SchemaObject& changed_;
  const Field& field_;
  VisitedObjects& visited_;
  InlinedVector<Entry, kSmallQueue> queue_;
  std::unordered_set<StyleSelector*> seen_; // those beyond the small queue
  StyleClimb* outer_;
};

} // namespace vorrel::kestan
