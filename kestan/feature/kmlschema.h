#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/feature/kml.h"
#include "kestan/host/spinlock.h"

#include <QHash>

namespace vorrel::kestan {

/// The table of the root, and the hint targets that the process knows. An object keeps the index
/// of its target. Thread: any.
class KESTAN_EXPORT KmlSchema final : public SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy> {
public:
  KmlSchema();

  /// Learns the targets that aren't known yet.
  void AddHintTargets(const mmvector<QString>& targets) const;
  /// The index of the target that a `hint` attribute names, which is learnt when it's new; -1
  /// without one, and when there's no room for more.
  int GetHintTargetId(const QString& text) const;
  /// Null for an index without a target.
  QString GetHintTargetString(int id) const;
  /// The `hint` attribute for the target, else for the one that the options name, else empty.
  QString ComposeHintString(int id) const;

  // Child objects are initialised by the constructor, since their classes lie above this folder.
  ObjField<TarrowLink> link;
  ObjField<NetworkLinkControl> control;
  ObjField<AbstractFeature> feature;
  ObjField<Theme> theme;
  StrField source{*this, "DocumentSource", OffsetOf(&Kml::source_), Field::kElement};
  StrField hint{*this, "hint", OffsetOf(&Kml::hint_), Field::kAttribute};

private:
  int AddHintTarget(const QString& target) const;

  mutable SpinLock lock_;
  mutable mmvector<QString> hintTargets_;
  mutable QHash<QString, int> hintTargetIds_;
};

extern template class SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
