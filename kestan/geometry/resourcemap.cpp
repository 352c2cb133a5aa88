#include "kestan/geometry/resourcemap.h"

#include "kestan/core/bitguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/resourcemapschema.h"
#include "kestan/host/resourcedictionary.h"

namespace vorrel::kestan {

template class SchemaT<ResourceMap, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<ResourceMap>;

namespace {

const ResourceMapSchema& Fields() { return ResourceMapSchema::GetSingleton(); }

} // namespace

ResourceMapSchema::ResourceMapSchema() : SchemaT("ResourceMap", nullptr, Namespace::kKml) {}

const Schema& ResourceMap::GetClassSchema() { return ResourceMapSchema::GetSingleton(); }

ResourceMap::ResourceMap(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ResourceMap::~ResourceMap() { NotifyPreDelete(); }

QString ResourceMap::FindTarget(const QString& source) const {
  for (const RefPtr<Alias>& alias : aliases_) {
    if (alias && alias->GetSourceHref() == source)
      return alias->GetTargetHref();
  }
  return QString();
}

void ResourceMap::GetCopy(ResourceDictionary& out, const QString& object) const {
  out.Clear();
  for (const RefPtr<Alias>& alias : aliases_) {
    if (alias)
      out.Insert(alias->GetSourceHref(), object, alias->GetTargetHref());
  }
}

void ResourceMap::AddMapping(const QString& source, const QString& target) {
  const DeletionDeferrer deferrer;
  const RefPtr<Alias> alias(new Alias(source, target, KmlId(), QString()));
  const BitGuard silence(this, kBitNoFieldNotify, true);
  Fields().aliases.add(*this, alias.get());
}

void ResourceMap::removeAll() {
  const DeletionDeferrer deferrer;
  Fields().aliases.setCount(*this, 0);
}

void ResourceMap::SetAll(const ResourceDictionary& dictionary, const QString& object) {
  const DeletionDeferrer deferrer;
  const RefPtr<ResourceMap> kept(this);
  ResourceDictionary missing = dictionary.GetSimplifiedCopy(object);
  mmvector<int> leaving;
  // Of the list as it is now, whatever those do who hear of a change.
  const mmvector<RefPtr<Alias>> present(aliases_);
  mmvector<std::pair<RefPtr<Alias>, QString>> changing;
  for (std::size_t i = 0; i < present.size(); ++i) {
    const QString* const target =
        present[i] ? missing.Find(present[i]->GetSourceHref(), QString()) : nullptr;
    if (!target) {
      leaving.push_back(static_cast<int>(i));
      continue;
    }
    if (*target != present[i]->GetTargetHref())
      changing.emplace_back(present[i], *target);
    missing.Erase(present[i]->GetSourceHref(), QString());
  }
  const bool isChanged =
      Fields().aliases.EraseMultiple(this, leaving) > 0 || !changing.empty() || !missing.IsEmpty();
  for (const auto& [alias, target] : changing)
    alias->SetTargetHref(target);
  for (const auto& [key, target] : missing.GetEntries())
    AddMapping(key.first, target);
  if (isChanged)
    Fields().aliases.NotifyFieldChanged(*this);
}

} // namespace vorrel::kestan
