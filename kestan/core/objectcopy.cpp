// Copying, merging and walks: written once, on the field lists of the schema.

#include "kestan/core/bitguard.h"
#include "kestan/core/childmove.h"
#include "kestan/core/childwalk.h"
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

/// Levels of a tree that are cloned one inside the other. What lies deeper is filled in from a
/// list, so that no nesting overflows the stack.
constexpr int kMaxNesting = 200;

/// The clones that one call makes, and what they are made of. All of it stays in memory until the
/// call ends, whatever dies.
struct CloneSession {
  mmvector<std::pair<const SchemaObject*, SchemaObject*>> clones;
  mmvector<std::pair<RefPtr<const SchemaObject>, RefPtr<SchemaObject>>> hollow; ///< Yet to fill.
  int depth = 0;

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
  dst.SetBit(kBitWasRead, GetBit(kBitWasRead));
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
    KeptField to{from.field, from.bare, {}, from.text, from.entries};
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

void SchemaObject::CloneFields(SchemaObject& dst, bool deep,
                               const mmvector<const Field*>* excluded) const {
  auto& hollow = t_session->hollow;
  ++t_session->depth;
  CopyFields(dst, deep, excluded, true);
  dst.StopReading();
  // All that the outermost one holds is whole before anybody hears of it.
  while (t_session->depth == 1 && !hollow.empty()) {
    const auto [source, clone] = std::move(hollow.back());
    hollow.pop_back();
    const BitGuard silence(clone.get(), kBitNoFieldNotify, true);
    source->CloneFields(*clone, true, nullptr);
  }
  --t_session->depth;
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
    if (t_session->depth == kMaxNesting && deep && !excluded)
      t_session->hollow.emplace_back(this, object);
    else
      CloneFields(*object, deep, excluded);
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
  // In a list, so that no nesting overflows the stack.
  mmvector<const SchemaObject*> open{this};
  while (!open.empty()) {
    const SchemaObject& object = *open.back();
    open.pop_back();
    if (object.isOfType(schema))
      out.push_back(const_cast<SchemaObject*>(&object));
    const auto first = static_cast<std::ptrdiff_t>(open.size());
    ForEachChild(object, [&](const SchemaObject& child) { open.push_back(&child); });
    std::reverse(open.begin() + first, open.end()); // the first one is the next
  }
}

} // namespace vorrel::kestan
