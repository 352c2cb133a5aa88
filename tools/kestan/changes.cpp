#include "tools/kestan/changes.h"

#include "kestan/core/schema.h"
#include "tools/kestan/walk.h"

#include <QStringList>

#include <unordered_set>
#include <utility>

using namespace vorrel::kestan;

namespace tool {

namespace {

QString GetValue(const SchemaObject& object, const Field& field) {
  if (!field.IsRepeatable()) {
    QString text;
    QString attributes;
    field.GetForm(object, text, attributes);
    return attributes.isEmpty() ? text : (text + attributes).trimmed();
  }
  QStringList values;
  for (int i = 0; i < field.getCount(object); ++i) {
    values += field.toString(object, i);
  }
  return values.join(QLatin1Char(' '));
}

template <class Visit> void ForEachValue(const SchemaObject& object, Visit visit) {
  const Schema& schema = object.GetSchema();
  for (const auto* fields : {&schema.GetAttributes(), &schema.GetSerializedFields()}) {
    for (const Field* field : *fields) {
      if (!field->GetObjSchema() && !field->HasFlag(Field::kNoWrite)) {
        visit(*field, GetValue(object, *field));
      }
    }
  }
}

/// The name of an object below another one of the name `parent`.
QString GetObjectName(const SchemaObject& object, const QString& parent) {
  if (!object.GetId().isEmpty()) {
    return QLatin1Char('#') + object.GetId();
  }
  QString name = parent.isEmpty() ? object.getType() : parent + QLatin1Char('/') + object.getType();
  if (object.GetArrayIndex() >= 0) {
    name += QStringLiteral("[%1]").arg(object.GetArrayIndex());
  }
  return name;
}

/// Calls `visit(object, name, parent)` for each object of the tree; `parent` is the number of the
/// object's parent in the order of the calls, or -1.
template <class Visit> void ForEachObject(const SchemaObject& root, Visit visit) {
  std::vector<std::pair<QString, std::ptrdiff_t>> open; // by depth
  std::ptrdiff_t number = 0;
  Walk walk(root);
  while (const SchemaObject* object = walk.Next()) {
    open.resize(walk.GetDepth());
    const auto parent = open.empty() ? std::pair(QString(), std::ptrdiff_t(-1)) : open.back();
    const QString name = GetObjectName(*object, parent.first);
    visit(*object, name, parent.second);
    open.emplace_back(name, number++);
  }
}

} // namespace

Changes::Changes(const SchemaObject& root) {
  ForEachObject(
      root, [this](const SchemaObject& object, const QString& name, std::ptrdiff_t parent) {
        Record record{std::make_unique<Watcher<SchemaObject>>(const_cast<SchemaObject*>(&object)),
                      parent,
                      name,
                      object.getType(),
                      {}};
        ForEachValue(object, [&](const Field& field, const QString& value) {
          record.values.emplace_back(&field, value);
        });
        records_.push_back(std::move(record));
      });
}

std::vector<Change> Changes::Find(const SchemaObject& root) const {
  std::unordered_set<const SchemaObject*> known;
  for (const Record& record : records_) {
    known.insert(record.object->get());
  }
  std::unordered_set<const SchemaObject*> present;
  std::vector<std::pair<const SchemaObject*, QString>> created;
  std::vector<bool> isNew;
  ForEachObject(root, [&](const SchemaObject& object, const QString& name, std::ptrdiff_t parent) {
    present.insert(&object);
    isNew.push_back(known.find(&object) == known.end());
    if (isNew.back() && (parent < 0 || !isNew[static_cast<std::size_t>(parent)])) {
      created.emplace_back(&object, name);
    }
  });

  std::vector<Change> changes;
  std::vector<bool> isGone;
  for (const Record& record : records_) {
    const SchemaObject* const object = record.object->get();
    isGone.push_back(!object || present.find(object) == present.end());
    if (isGone.back()) {
      const bool wentAlone = record.parent < 0 || !isGone[static_cast<std::size_t>(record.parent)];
      if (wentAlone) {
        changes.push_back({Change::kDeleted, record.name, record.type, {}, {}, {}});
      }
      continue;
    }
    auto former = record.values.begin();
    ForEachValue(*object, [&](const Field& field, const QString& value) {
      if (former->second != value) {
        changes.push_back(
            {Change::kSet, record.name, record.type, field.GetName(), former->second, value});
      }
      ++former;
    });
  }
  for (const auto& [object, name] : created) {
    changes.push_back({Change::kCreated, name, object->getType(), {}, {}, {}});
  }
  return changes;
}

} // namespace tool
