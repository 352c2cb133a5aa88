#include "kestan/geometry/alias.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/aliasschema.h"
#include "kestan/geometry/model.h"
#include "kestan/host/kmzcontents.h"
#include "kestan/host/net.h"
#include "kestan/host/url.h"
#include "kestan/link/link.h"         // where the model's file is
#include "kestan/write/sourcefiles.h" // whether it's there
#include "kestan/write/writestate.h"  // the target moves with the file

#include <utility>

namespace vorrel::kestan {

template class SchemaT<Alias, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<Alias>;

namespace {

/// Where archives keep the files of their documents.
const char kFolder[] = "files/";

bool IsFile(const QString& url) {
  QString archive;
  QString inner;
  SourceFile source;
  if (GGetUrlType(url) != kUrlLocal)
    return false;
  return net::Fetcher::FindInKmz(url, &archive, &inner) ? kmz::HasReference(archive, inner)
                                                        : SourceFiles().Locate(url, source);
}

QString GetFolder(const QString& url) {
  const bool isNetwork = GGetUrlType(url) == kUrlNetwork;
  const QString path = isNetwork ? url.section(QLatin1Char('?'), 0, 0) : url;
  return path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

AliasSchema::AliasSchema() : SchemaT("Alias", nullptr, Namespace::kKml) {}

const Schema& Alias::GetClassSchema() { return AliasSchema::GetSingleton(); }

Alias::Alias(const KmlId& id, const QString& baseUrl) : Alias(QString(), QString(), id, baseUrl) {}

Alias::Alias(const QString& source, const QString& target, const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl), targetHref_(target), sourceHref_(source) {
  NotifyPostCreate();
}

Alias::~Alias() { NotifyPreDelete(); }

void Alias::SetTargetHref(const QString& target) {
  AliasSchema::GetSingleton().targetHref.CheckSet(*this, target);
}

const Model* Alias::GetModel() const {
  const SchemaObject* const map = GetOwner(0);
  const SchemaObject* const model = map ? map->GetOwner(0) : nullptr;
  const bool isModel = model && model->isOfType(Model::GetClassSchema());
  return isModel ? static_cast<const Model*>(model) : nullptr;
}

QString Alias::GetTargetUrl() const {
  if (targetHref_.isEmpty())
    return QString();
  const Model* const model = GetModel();
  const QString& base = model ? model->GetBaseUrl() : GetBaseUrl();
  const QString inDocument = ResolveUrl(base, targetHref_);
  const Link* const link = model ? model->GetModelDataLink() : nullptr;
  const QString file = link ? link->GetResourceUrl() : QString();
  if (file.isEmpty() || GetRelativeUrlType(targetHref_, base) != kUrlRelative)
    return inDocument;
  const QString besideFile = ResolveUrl(GetFolder(file), targetHref_);
  return IsFile(besideFile) || !IsFile(inDocument) ? besideFile : inDocument;
}

QString Alias::GetTargetText(WriteState& state) const {
  const QString url = GetTargetUrl();
  if (url.isEmpty())
    return targetHref_;
  QString archive;
  QString inner;
  const bool isPacked = state.mode() == WriteState::kWriteKmzFile;
  const bool isUnpacked =
      state.mode() == WriteState::kWriteKmlFile && net::Fetcher::FindInKmz(url, &archive, &inner);
  if (!isPacked && !isUnpacked)
    return targetHref_; // from the model's file, wherever that is
  const QString text = state.RegisterUrl(targetHref_, url, true, this);
  const Model* const model = GetModel();
  const Link* const link = model ? model->GetModelDataLink() : nullptr;
  const QLatin1String folder(kFolder);
  if (!isPacked || !link || !state.RegisterLink(*link).startsWith(folder) ||
      GGetUrlType(text) != kUrlRelative)
    return text;
  return text.startsWith(folder) ? text.mid(folder.size()) : QLatin1String("../") + text;
}

void Alias::WriteKml(WriteState& state) const { WriteKml(state, QString()); }

void Alias::WriteKml(WriteState& state, const QString&) const {
  if (sourceHref_.isEmpty() || targetHref_.isEmpty())
    return;
  // Here the object is its own scratch copy: the fields write what the members hold.
  auto& self = const_cast<Alias&>(*this);
  QString written = GetTargetText(state);
  std::swap(self.targetHref_, written);
  SchemaObject::WriteKml(state);
  std::swap(self.targetHref_, written);
}

} // namespace vorrel::kestan
