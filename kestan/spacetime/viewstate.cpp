#include "kestan/spacetime/viewstate.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/viewstateschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<RenderState, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<ViewState, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<RenderState>;
template class ObjField<ViewState>;

namespace {

const ViewStateSchema& Fields() { return ViewStateSchema::GetSingleton(); }

} // namespace

RenderStateSchema::RenderStateSchema()
    : SchemaT("option", nullptr, Namespace::kExt),
      options_({{kSunlight, QStringLiteral("sunlight")},
                {kHistoricalImagery, QStringLiteral("historicalimagery")},
                {kStreetView, QStringLiteral("streetview")}},
               false) {
  enabled.SetDefault(true);
}

ViewStateSchema::ViewStateSchema() : SchemaT("ViewerOptions", nullptr, Namespace::kExt) {}

const Schema& RenderState::GetClassSchema() { return RenderStateSchema::GetSingleton(); }

RenderState::RenderState(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

RenderState::~RenderState() { NotifyPreDelete(); }

const Schema& ViewState::GetClassSchema() { return ViewStateSchema::GetSingleton(); }

ViewState::ViewState(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ViewState::~ViewState() { NotifyPreDelete(); }

RenderState* ViewState::GetRenderState(int index) const {
  return index < 0 || index >= GetRenderStateCount()
             ? nullptr
             : renderStates_[static_cast<std::size_t>(index)].get();
}

int ViewState::FindRenderState(int option) const {
  const auto place =
      std::find_if(renderStates_.begin(), renderStates_.end(),
                   [=](const auto& state) { return state && state->GetName() == option; });
  return place == renderStates_.end() ? -1 : static_cast<int>(place - renderStates_.begin());
}

bool ViewState::AddRenderState(RenderState* state) {
  return state && FindRenderState(state->GetName()) < 0 && Fields().renderStates.add(*this, state);
}

bool ViewState::RemRenderState(int index) { return Fields().renderStates.remove(*this, index); }

bool ViewState::RemRenderState(RenderState* state) {
  return Fields().renderStates.remove(*this, state);
}

int ViewState::GetIntRepresentation() const {
  unsigned sum = 0;
  for (const auto& state : renderStates_) {
    if (state && state->IsEnabled())
      sum += 1U << (static_cast<unsigned>(state->GetName()) & 31U);
  }
  return static_cast<int>(sum);
}

} // namespace vorrel::kestan
