#include "kestan/feature/folder.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/folderschema.h"

namespace vorrel::kestan {

template class SchemaT<Folder, NewInstancePolicy, NoDerivedPolicy>;

FolderSchema::FolderSchema()
    : SchemaT("Folder", &AbstractFolder::GetClassSchema(), Namespace::kKml) {}

const Schema& Folder::GetClassSchema() { return FolderSchema::GetSingleton(); }

Folder::Folder(const KmlId& id, const QString& baseUrl)
    : AbstractFolder(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Folder::~Folder() { NotifyPreDelete(); }

void Folder::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
