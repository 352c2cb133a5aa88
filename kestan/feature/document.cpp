#include "kestan/feature/document.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/custom/customschema.h" // child class, for the field table
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/abstractfolderschema.h"
#include "kestan/feature/documentschema.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/style/stylemap.h" // child class, for the field table
#include "kestan/write/stylehoist.h"
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

template class SchemaT<Document, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const DocumentSchema& Fields() { return DocumentSchema::GetSingleton(); }

} // namespace

DocumentSchema::DocumentSchema()
    : SchemaT("Document", &AbstractFolder::GetClassSchema(), Namespace::kKml),
      styleSelectors(*this, QString(), StyleSelector::GetClassSchema(),
                     OffsetOf(&Document::styleSelectors_)),
      schemas(*this, QString(), CustomSchema::GetClassSchema(), OffsetOf(&Document::schemas_)) {}

bool SharedStylesField::set(SchemaObject& owner, SchemaObject* child, int index) const {
  return IsAnonymous(child) ? TakeInline(owner, *child) : ObjArrayField::set(owner, child, index);
}

bool SharedStylesField::insert(SchemaObject& owner, SchemaObject* child, int index) const {
  return IsAnonymous(child) ? TakeInline(owner, *child)
                            : ObjArrayField::insert(owner, child, index);
}

int SharedStylesField::AddMultiple(SchemaObject* owner,
                                   const ArraySlice<RefPtr<SchemaObject>>& children) const {
  mmvector<RefPtr<SchemaObject>> named;
  int taken = 0;
  for (const RefPtr<SchemaObject>& child : children) {
    if (!IsAnonymous(child.get()))
      named.push_back(child);
    else if (TakeInline(*owner, *child))
      ++taken;
  }
  return taken + ObjArrayField::AddMultiple(owner, {named.data(), named.size()});
}

bool SharedStylesField::IsAnonymous(const SchemaObject* style) {
  return style && style->GetId().isEmpty();
}

const Field& SharedStylesField::GetPlaceFor(const SchemaObject& child) const {
  if (IsAnonymous(&child))
    return AbstractFeatureSchema::GetSingleton().inlineStyleSelector;
  return *this;
}

bool SharedStylesField::TakeInline(SchemaObject& document, SchemaObject& style) {
  return AbstractFeatureSchema::GetSingleton().inlineStyleSelector.set(document, &style, -1);
}

const Schema& Document::GetClassSchema() { return DocumentSchema::GetSingleton(); }

Document::Document(const KmlId& id, const QString& baseUrl)
    : AbstractFolder(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Document::~Document() { NotifyPreDelete(); }

bool Document::AddStyleSelector(StyleSelector& selector) {
  return Fields().styleSelectors.add(*this, &selector);
}

bool Document::InsertStyleSelector(int index, StyleSelector& selector) {
  const bool inRange = index >= 0 && index < GetStyleSelectorCount();
  return Fields().styleSelectors.insert(*this, &selector, inRange ? index : -1);
}

bool Document::RemStyleSelector(StyleSelector& selector) {
  return Fields().styleSelectors.remove(*this, &selector);
}

int Document::FindStyleSelector(const StyleSelector& selector) const {
  return Fields().styleSelectors.FindObject(*this, selector);
}

StyleSelector* Document::GetStyleSelector(int index) const {
  return styleSelectors_.at(static_cast<std::size_t>(index)).get();
}

void Document::AddSchema(CustomSchema& schema) {
  if (!schema.GetName().isEmpty())
    Fields().schemas.add(*this, &schema);
}

void Document::SetClientData(std::unique_ptr<ClientData> data) { clientData_ = std::move(data); }

void Document::CollectStylesAndSchemas(WriteState& state) const {
  StyleHoist& hoist = state.hoist();
  if (!hoist.IsInOutermost())
    return; // it has been here already
  hoist.EnterInnerDocument();
  CollectContents(state);
  hoist.LeaveInnerDocument();
}

void Document::CollectContents(WriteState& state) const {
  for (const RefPtr<CustomSchema>& schema : schemas_) {
    if (schema)
      state.hoist().AddOwnSchema(*schema);
  }
  AbstractFeature::CollectStylesAndSchemas(state);
  for (const RefPtr<StyleSelector>& style : styleSelectors_) {
    if (!style)
      continue;
    state.hoist().AddInPlace(*style, StyleHoist::Place::kShared);
    if (style->isOfType(StyleMap::GetClassSchema()))
      static_cast<const StyleMap&>(*style).CollectReferences(state, true);
  }
  CollectChildren(state);
}

void Document::WriteKml(WriteState& state) const {
  UpdateOldSnippet();
  state.PushStylesAndSchemas();
  CollectContents(state);
  state.hoist().AddOwnStyles(styleSelectors_);
  state.hoist().AssignStyleIds();
  WriteKmlStylesSchemas(state, nullptr);
  state.PopStylesAndSchemas();
}

void Document::WriteStylesAndSchemas(WriteState& state, const QString&) const { WriteKml(state); }

void Document::WriteKmlStylesSchemas(WriteState& state, const AbstractFeature* feature) const {
  WriteKmlStartTag(state, false);
  for (const Field* field : AbstractFeature::GetClassSchema().GetSerializedFields())
    WriteField(*field, state);
  const AbstractFolderSchema& folderFields = AbstractFolderSchema::GetSingleton();
  WriteField(folderFields.icon, state);
  WriteUnknownFields(state);
  state.hoist().WriteSchemas(state);
  state.hoist().WriteStyles(state);
  if (feature)
    feature->WriteKml(state);
  else
    folderFields.children.WriteKml(*this, state);
  WriteKmlEndTag(state, false);
}

void Document::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
