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

#include <algorithm>

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
  if (!state.hoist().IsInOutermost())
    return; // it has been here already
  LeaveStyles(state);
  state.hoist().EnterInnerDocument();
  CollectStyleReferences(state);
  AbstractFolder::CollectStylesAndSchemas(state);
  state.hoist().LeaveInnerDocument();
}

void Document::LeaveStyles(WriteState& state) const {
  for (const RefPtr<StyleSelector>& style : styleSelectors_) {
    if (style)
      state.hoist().LeaveStyle(*style, true);
  }
}

void Document::CollectStyleReferences(WriteState& state) const {
  for (const RefPtr<StyleSelector>& style : styleSelectors_) {
    if (style && style->isOfType(StyleMap::GetClassSchema()))
      static_cast<const StyleMap&>(*style).CollectReferences(state);
  }
}

void Document::WriteKml(WriteState& state) const {
  state.PushStylesAndSchemas();
  state.hoist().AddOwnStyles(styleSelectors_);
  CollectStyleReferences(state);
  AbstractFolder::CollectStylesAndSchemas(state);
  state.hoist().AssignStyleIds();
  WriteKmlStylesSchemas(state, nullptr);
  state.PopStylesAndSchemas();
  LeaveStyles(state); // for the documents behind this one
}

void Document::WriteStylesAndSchemas(WriteState& state, const QString&) const { WriteKml(state); }

void Document::WriteKmlStylesSchemas(WriteState& state, const AbstractFeature* feature) const {
  WriteKmlStartTag(state, false);
  for (const Field* field : AbstractFeature::GetClassSchema().GetSerializedFields())
    field->WriteKml(*this, state);
  const AbstractFolderSchema& folderFields = AbstractFolderSchema::GetSingleton();
  folderFields.icon.WriteKml(*this, state);
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

bool Document::HasRoomFor(const Field& field, bool hasId) const {
  const bool isAnonymousStyle = &field == &Fields().styleSelectors && !hasId;
  return isAnonymousStyle ? !GetInlineStyleSelector() : AbstractFolder::HasRoomFor(field, hasId);
}

void Document::NotifyFieldChanged(const Field& field) {
  if (&field == &Fields().styleSelectors)
    TakeAnonymousStyle();
  AbstractFolder::NotifyFieldChanged(field);
}

void Document::TakeAnonymousStyle() {
  // Documents come with one style behind the other: of a list that only grew by one at its end, the
  // others were looked at before.
  const bool isAppended = namedStyleCount_ > 0 && styleSelectors_.size() == namedStyleCount_ + 1 &&
                          styleSelectors_[namedStyleCount_ - 1] == lastNamedStyle_;
  const auto anonymous = std::find_if(
      isAppended ? styleSelectors_.end() - 1 : styleSelectors_.begin(), styleSelectors_.end(),
      [](const RefPtr<StyleSelector>& style) { return style && style->GetId().isEmpty(); });
  if (anonymous != styleSelectors_.end()) {
    const RefPtr<StyleSelector> selector = *anonymous;
    const int index = static_cast<int>(anonymous - styleSelectors_.begin());
    Fields().styleSelectors.EraseMultiple(this, {&index, 1});
    SetInlineStyleSelector(selector.get());
    namedStyleCount_ = 0;
    return;
  }
  namedStyleCount_ = styleSelectors_.size();
  lastNamedStyle_ = namedStyleCount_ > 0 ? styleSelectors_.back().get() : nullptr;
}

} // namespace vorrel::kestan
