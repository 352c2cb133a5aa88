// Copying, merging and walks: written once, on the field lists of the schema.

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/url.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// Elements and child objects first, then attributes.
template <class Visit> void ForEachCopiedField(const Schema& schema, Visit visit) {
  for (const auto* list : {&schema.GetSerializedFields(), &schema.GetAttributes()}) {
    for (const Field* field : *list) {
      if (!field->HasFlag(Field::kNoCopy))
        visit(*field);
    }
  }
}

thread_local int t_clonesInWork = 0;

bool Contains(const mmvector<const Field*>* fields, const Field& field) {
  return fields && std::find(fields->begin(), fields->end(), &field) != fields->end();
}

} // namespace

void SchemaObject::CopyFields(SchemaObject& dst, bool deep, const mmvector<const Field*>* excluded,
                              bool fresh) const {
  ForEachCopiedField(dst.GetSchema(), [&](const Field& field) {
    if (Contains(excluded, field))
      return;
    if (fresh)
      field.clone(dst, *this, deep);
    else
      field.copy(dst, *this, deep);
  });
  if (unknownData_) {
    dst.unknownData() = *unknownData_;
    dst.SetBit(kBitUnknownFieldAttrs, GetBit(kBitUnknownFieldAttrs));
  }
  dst.CopyNonFieldStuff(*this);
}

RefPtr<SchemaObject> SchemaObject::clone(const KmlId& id, bool deep,
                                         const mmvector<const Field*>* excluded) const {
  RefPtr<SchemaObject> object = schema_->CreateInstance(GetUniqueRuntimeId(id), baseUrl_, nullptr);
  if (!object)
    return object;
  // It's put together as a document is: what is inherited goes down once, when the outermost is
  // whole.
  object->BeginReading();
  ++t_clonesInWork;
  CopyFields(*object, deep, excluded, true);
  --t_clonesInWork;
  if (t_clonesInWork == 0)
    object->EndReading();
  else
    object->SetBit(kBitBeingRead, false);
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
  const unsigned specified = b.GetFieldsSpecified();
  ForEachCopiedField(*schema_, [&](const Field& field) {
    field.merge(*this, a, b, (specified & field.GetMaskBit()) != 0);
  });
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
    const int count = field->IsArray() ? field->getCount(*this) : 1;
    for (int i = 0; i < count; ++i) {
      if (const SchemaObject* child = field->GetObject(*this, i))
        child->FindBySchema(schema, out);
    }
  }
}

} // namespace vorrel::kestan
