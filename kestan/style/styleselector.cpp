#include "kestan/style/styleselector.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/objurlfield_impl.h"
#include "kestan/core/schemaobjectschema.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/style/builtinstyles.h"
#include "kestan/style/stylecache.h"
#include "kestan/style/styleclimb.h"
#include "kestan/style/styleselectorschema.h"
#include "kestan/style/stylevisitor.h"

namespace vorrel::kestan {

template class SchemaT<StyleSelector, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<StyleSelector>;
template class ObjArrayField<StyleSelector>;
template class ObjUrlField<StyleSelector>;

std::atomic<std::uint32_t> StyleSelector::s_deaths_{0};

StyleSelectorSchema::StyleSelectorSchema() : SchemaT("StyleSelector", nullptr, Namespace::kKml) {}

const Schema& StyleSelector::GetClassSchema() { return StyleSelectorSchema::GetSingleton(); }

void StyleSelector::Initialize() { BuiltInStyles::Create(); }

void StyleSelector::Shutdown() {
  ThreadContext::GetMain()->styleCache.reset();
  BuiltInStyles::Delete();
}

StyleSelector::StyleSelector(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl),
      isUnlisted_(ThreadContext::GetCurrent()->unlistedCount != 0) {
  SetBit(kBitRootStyle, id.url.startsWith(QLatin1String("root://")));
}

StyleSelector::~StyleSelector() {
  if (!isUnlisted_)
    s_deaths_.fetch_add(1, std::memory_order_relaxed);
}

StyleSelector* StyleSelector::find(const KmlId& id) {
  SchemaObject* object = SchemaObject::find(id);
  return object && object->isOfType(GetClassSchema()) ? static_cast<StyleSelector*>(object)
                                                      : nullptr;
}

void StyleSelector::accept(StyleVisitor& visitor) { visitor.visit(*this); }

void StyleSelector::EnterPlace(SchemaObject& owner, int index) {
  home_ = &owner;
  SetArrayIndex(index);
  Join(owner);
}

void StyleSelector::LeavePlace(SchemaObject& owner) {
  home_ = nullptr;
  SetArrayIndex(-1);
  // It asks as one that has left, since the lists of `owner` would be searched for it otherwise.
  RemOwner(owner);
  const Field* const field = owner.FindObject(*this, nullptr);
  if (field && !field->GetObjSchema()) // a reference to this one stays
    Join(owner);
}

void StyleSelector::AddOwner(SchemaObject& newOwner) {
  if (newOwner.FindObject(*this, nullptr))
    Join(newOwner);
}

void StyleSelector::Join(SchemaObject& newOwner) {
  if (GetBit(kBitDeleting))
    return;
  if (owners_) {
    owners_->insert(&newOwner);
  } else if (!owner_) {
    owner_ = &newOwner;
  } else if (owner_ != &newOwner) {
    owners_ = std::make_unique<OwnerSet>();
    owners_->insert(owner_);
    owners_->insert(&newOwner);
    owner_ = nullptr;
  }
}

void StyleSelector::RemOwner(SchemaObject& former) {
  if (!owners_) {
    if (owner_ == &former)
      owner_ = nullptr;
    return;
  }
  owners_->erase(&former);
  if (owners_->size() == 1) {
    owner_ = (*owners_)[0];
    owners_.reset();
  }
}

bool StyleSelector::HasOwner(const SchemaObject& object) const {
  return owners_ ? owners_->contains(&object) : owner_ == &object;
}

int StyleSelector::GetOwnerCount() const {
  return owners_ ? owners_->size() : SchemaObject::GetOwnerCount();
}

SchemaObject* StyleSelector::GetOwner(int index) const {
  if (!owners_)
    return index == 0 ? owner_ : nullptr;
  return index >= 0 && index < GetOwnerCount() ? (*owners_)[index] : nullptr;
}

void StyleSelector::NotifyFieldChanged(const Field& field) {
  const RefPtr<StyleSelector> kept(GetRefCount() > 0 ? this : nullptr); // whatever observers do
  SchemaObject::NotifyFieldChanged(field);
  if (kept && &field == &SchemaObjectSchema::GetSingleton().id)
    ThreadContext::GetMain()->styleCreationObserver->OnPostCreate({this});
}

void StyleSelector::NotifySubFieldChanged(SchemaObject& changed, const Field& field,
                                          VisitedObjects& visited) {
  if (StyleClimb* climb = StyleClimb::Find(visited)) {
    climb->Add(*this);
    return;
  }
  StyleClimb climb(changed, field, visited);
  climb.Add(*this);
  climb.Run();
}

} // namespace vorrel::kestan
