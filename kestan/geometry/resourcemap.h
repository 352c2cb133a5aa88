#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

namespace vorrel {
class ResourceDictionary;
}

namespace vorrel::kestan {

class Alias;
class ResourceMapSchema;

/// Where the files are that a model's file names.
class KESTAN_EXPORT ResourceMap final : public SchemaObject {
public:
  using ClassSchema = ResourceMapSchema;
  static const Schema& GetClassSchema();
  ResourceMap(const KmlId& id, const QString& baseUrl);
  ~ResourceMap() override;

  /// In file order; entries may be null.
  const mmvector<RefPtr<Alias>>& GetAliases() const { return aliases_; }
  /// Target of the first alias for the name; null without one.
  QString FindTarget(const QString& source) const;
  /// Makes `out` a dictionary of the names and targets, each name for `object`.
  void GetCopy(ResourceDictionary& out, const QString& object) const;
  /// Brings the aliases in line with what the dictionary says for `object`: those that it doesn't
  /// name go, and the others come behind. One notice, if anything changes.
  void SetAll(const ResourceDictionary& dictionary, const QString& object);
  // Both send no notice.
  void AddMapping(const QString& source, const QString& target);
  void removeAll();

private:
  friend class ResourceMapSchema;

  mmvector<RefPtr<Alias>> aliases_;
};

} // namespace vorrel::kestan
