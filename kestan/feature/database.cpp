#include "kestan/feature/database.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/databaseschema.h"
#include "kestan/feature/featurevisitor.h"

namespace vorrel::kestan {

template class SchemaT<Database, NoInstancePolicy, NoDerivedPolicy>;

std::atomic<std::int32_t> Database::num_databases_{0};

namespace {

const Database* AsDatabase(const AbstractFeature* feature) {
  return feature && feature->isOfType(Database::GetClassSchema())
             ? static_cast<const Database*>(feature)
             : nullptr;
}

} // namespace

DatabaseSchema::DatabaseSchema()
    : SchemaT("Database", &AbstractFolder::GetClassSchema(), Namespace::kKml) {}

const Schema& Database::GetClassSchema() { return DatabaseSchema::GetSingleton(); }

Database::Database(const QString& url, const KmlId& id, const QString& baseUrl, bool clientFlag,
                   bool hasOwnDrawOrder)
    : AbstractFolder(GetClassSchema(), id, baseUrl), databaseUrl_(url), clientFlag_(clientFlag),
      hasOwnDrawOrder_(hasOwnDrawOrder), childDrawOrder_(GetNextChildDrawOrder()) {
  NotifyPostCreate();
}

Database::~Database() { NotifyPreDelete(); }

int Database::GetNextChildDrawOrder() { return num_databases_.fetch_add(1); }

int Database::GetDrawOrder() const {
  if (hasOwnDrawOrder_)
    return drawOrder_;
  const AbstractFeature* top = nullptr;
  for (const AbstractFeature* above = GetParent(); above; above = above->GetParent()) {
    top = above;
    const Database* const database = AsDatabase(above);
    if (database && database->hasOwnDrawOrder_)
      return database->drawOrder_;
  }
  const Database* const database = AsDatabase(top);
  return database ? database->drawOrder_ : -1;
}

void Database::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
