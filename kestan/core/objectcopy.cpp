// Copying, merging and walks: written once, on the field lists of the schema.

#include "kestan/core/childmove.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/objfield.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/url.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace vorrel::kestan {

namespace {

/// Elements and child objects first, then attributes; of objects of another class those that both
/// have.
template <class Visit>
void ForEachCopiedField(const SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                        Visit visit) {
  const Schema& schema = dst.GetSchema();
  const bool isAlike = &a.GetSchema() == &schema && &b.GetSchema() == &schema;
  for (const auto* list : {&schema.GetSerializedFields(), &schema.GetAttributes()}) {
    for (const Field* field : *list) {
      if (!field->HasFlag(Field::kNoCopy) &&
          (isAlike || (a.isOfType(field->GetSchema()) && b.isOfType(field->GetSchema()))))
        visit(*field);
    }
  }
}

/// A reference to what may lie below the object that is changed. Nobody counts what is built.
RefPtr<const SchemaObject> Keep(const SchemaObject& object) {
  return RefPtr<const SchemaObject>(object.GetRefCount() > 0 ? &object : nullptr);
}

/// The clones that one call makes, and what they are made of. All of it stays in memory until the
/// call ends, whatever dies.
struct CloneSession {
  mmvector<std::pair<const SchemaObject*, SchemaObject*>> clones;

  /// References between objects that were cloned lead from clone to clone.
  void Connect() const;
};

thread_local CloneSession* t_session = nullptr;

void CloneSession::Connect() const {
  std::unordered_map<const SchemaObject*, const SchemaObject*> copies;
  for (const auto& entry : clones) {
    for (const ObjUrlFieldBase* field : entry.first->GetSchema().GetReferences())
      copies.emplace(field->GetTarget(*entry.first), nullptr);
  }
  if (copies.empty())
    return;
  for (const auto& [source, clone] : clones) {
    const auto place = copies.find(source);
    if (place != copies.end())
      place->second = clone;
  }
  for (const auto& [source, clone] : clones) {
    for (const ObjUrlFieldBase* field : source->GetSchema().GetReferences()) {
      const auto place = copies.find(field->GetTarget(*source));
      const SchemaObject* const copy = place == copies.end() ? nullptr : place->second;
      if (copy && !copy->GetId().isEmpty())
        field->SetTypedObject(*clone, copy->GetUrl() + QLatin1Char('#') + copy->GetId());
    }
  }
}

bool Contains(const mmvector<const Field*>* fields, const Field& field) {
  return fields && std::find(fields->begin(), fields->end(), &field) != fields->end();
}

mmvector<KeptField> GetKept(const SchemaObject& object) {
  return object.HasKeptValues() ? object.GetUnknownData()->kept->GetFields()
                                : mmvector<KeptField>();
}

} // namespace

void SchemaObject::CopyFields(SchemaObject& dst, bool deep, const mmvector<const Field*>* excluded,
                              bool fresh) const {
  const DeletionDeferrer deferrer;
  const RefPtr<const SchemaObject> kept = Keep(*this);
  const mmvector<KeptField> displaced = GetKept(*this);
  ForEachCopiedField(dst, *this, *this, [&](const Field& field) {
    if (Contains(excluded, field))
      return;
    if (fresh)
      field.clone(dst, *this, deep);
    else
      field.copy(dst, *this, deep);
    if (dst.HasKeptValues())
      dst.DropKeptValues(field); // a child that was there may have become the copy
  });
  if (unknownData_) {
    dst.unknownData() = *unknownData_;
    dst.SetBit(kBitUnknownFieldAttrs, GetBit(kBitUnknownFieldAttrs));
  }
  dst.TakeKeptValues(displaced, deep, excluded, fresh);
  dst.CopyNonFieldStuff(*this);
}

void SchemaObject::TakeKeptValues(const mmvector<KeptField>& kept, bool deep,
                                  const mmvector<const Field*>* excluded, bool fresh) {
  ChildMove move;
  for (const KeptField& from : kept) {
    if (from.field->HasFlag(Field::kNoCopy) || Contains(excluded, *from.field) ||
        !isOfType(from.field->GetSchema()))
      continue;
    KeptField to{from.field, from.bare, {}, from.text};
    for (const KeptValue& value : from.displaced) {
      if (value.object && !deep && fresh)
        continue; // like the children in fields
      to.displaced.push_back(value);
      if (value.object && deep)
        to.displaced.back().object = CloneInto(*this, *value.object);
      if (SchemaObject* child = to.displaced.back().object.get()) {
        move.Take(*child);
        ChildMove::Enter(*child, *this, -1);
      }
    }
    if (!to.IsEmpty())
      keptValues().Require(*from.field) = std::move(to);
  }
  move.Tell();
}

RefPtr<SchemaObject> SchemaObject::clone(const KmlId& id, bool deep,
                                         const mmvector<const Field*>* excluded) const {
  const DeletionDeferrer deferrer;
  RefPtr<SchemaObject> object = schema_->CreateInstance(GetUniqueRuntimeId(id), baseUrl_, nullptr);
  if (!object)
    return object;
  // It's put together as a document is: what is inherited goes down once, when the outermost is
  // whole.
  object->BeginReading();
  if (t_session) {
    // What an observer clones meanwhile stands elsewhere, and may be gone when the call ends.
    if (GetHome())
      t_session->clones.emplace_back(this, object.get());
    CopyFields(*object, deep, excluded, true);
    object->StopReading();
    return object;
  }
  CloneSession session;
  session.clones.emplace_back(this, object.get());
  t_session = &session;
  CopyFields(*object, deep, excluded, true);
  t_session = nullptr;
  object->EndReading();
  if (deep)
    session.Connect();
  return object;
}

RefPtr<SchemaObject> SchemaObject::clone(bool deep, const mmvector<const Field*>* excluded) const {
  return clone(KmlId(id_, GGetUrlType(url_) == kUrlRoot ? MakeRuntimeUrl(url_) : url_), deep,
               excluded);
}

void SchemaObject::copy(const SchemaObject& src, bool deep,
                        const mmvector<const Field*>* excluded) {
  src.CopyFields(*this, deep, excluded, false);
}

void SchemaObject::merge(const SchemaObject& a, const SchemaObject& b) {
  const DeletionDeferrer deferrer;
  const RefPtr<const SchemaObject> kept[] = {Keep(a), Keep(b)};
  const unsigned specified = b.GetFieldsSpecified();
  // What is kept comes with the value; where one gave none, with the text that it was.
  const auto isOfB = [&](const Field& field) {
    const KeptField* const entry = b.GetKeptField(field);
    return (specified & field.GetMaskBit()) != 0 || (entry && !entry->text.isNull());
  };
  mmvector<KeptField> displaced;
  for (const SchemaObject* source : {&a, &b}) {
    for (KeptField& entry : GetKept(*source)) {
      if (isOfB(*entry.field) == (source == &b))
        displaced.push_back(std::move(entry));
    }
  }
  ForEachCopiedField(*this, a, b, [&](const Field& field) {
    field.merge(*this, a, b, (specified & field.GetMaskBit()) != 0);
    if (HasKeptValues())
      DropKeptValues(field);
  });
  for (KeptField& from : displaced) {
    from.bare.clear();
    for (KeptValue& value : from.displaced)
      value.attrs = QString(); // unknown attributes aren't merged
  }
  TakeKeptValues(displaced, true, nullptr, true);
}

void SchemaObject::CopyNonFieldStuff(const SchemaObject& src) { hintTarget_ = src.hintTarget_; }

const Field* SchemaObject::FindObject(const SchemaObject& child, int* index) const {
  if (index)
    *index = -1;
  for (const Field* field : schema_->GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite) || !child.isOfType(*field->GetObjSchema()))
      continue;
    const int place = field->IsArray()                        ? field->FindObject(*this, child)
                      : field->GetObject(*this, -1) == &child ? 0
                                                              : -1;
    if (place >= 0) {
      if (index)
        *index = place;
      return field;
    }
  }
  return nullptr;
}

void SchemaObject::FindBySchema(const Schema& schema, mmvector<SchemaObject*>& out) const {
  if (isOfType(schema))
    out.push_back(const_cast<SchemaObject*>(this));
  for (const Field* field : schema_->GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite)) // may refer to what lies above
      continue;
    const int count = field->IsArray() ? field->getCount(*this) : 1;
    for (int i = 0; i < count; ++i) {
      if (const SchemaObject* child = field->GetObject(*this, i))
        child->FindBySchema(schema, out);
    }
  }
  if (!HasKeptValues())
    return;
  for (const KeptField& kept : unknownData_->kept->GetFields()) {
    for (const KeptValue& value : kept.displaced) {
      if (value.object)
        value.object->FindBySchema(schema, out);
    }
  }
}

} // namespace vorrel::kestan
