#include "kestan/feature/abstractfeature.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/extendeddata.h" // child classes, for the field table
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/feature/balloonvisibilityobserver.h"
#include "kestan/feature/document.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/snippet.h"
#include "kestan/feature/timedfeatures.h"
#include "kestan/feature/visibilityobserver.h"
#include "kestan/host/datetime.h"
#include "kestan/host/system.h"
#include "kestan/spacetime/abstractview.h"
#include "kestan/spacetime/region.h"
#include "kestan/spacetime/time.h" // visibility depends on the chosen time
#include "kestan/spacetime/timeprimitive.h"
#include "kestan/style/liststyle.h" // lines of a snippet
#include "kestan/style/style.h"
#include "kestan/write/stylehoist.h"
#include "kestan/write/writestate.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace vorrel::kestan {

template class SchemaT<AbstractFeature, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<AbstractFeature>;
template class ObjArrayField<AbstractFeature>;

namespace {

constexpr char kHomeDomainSuffix[] = "vorrel.com";

// Bounds of an entity replacement: how often, and to how many characters.
constexpr int kMaxReplacements = 1000;
constexpr int kMaxReplaced = 1 << 26;

/// The references in the values that were filled in, to see which of them lead back to themselves.
class FilledReferences {
public:
  /// False when `value` holds its own `token`, be it through the values of others.
  bool Add(const QString& token, const QString& value) {
    QStringList open = Find(value);
    references_[token] = open;
    QSet<QString> seen;
    while (!open.isEmpty()) {
      const QString next = open.takeLast();
      if (next == token)
        return false;
      if (!seen.contains(next))
        open += references_.value(next);
      seen.insert(next);
    }
    return true;
  }

private:
  static QStringList Find(const QString& text) {
    QStringList found;
    for (auto at = text.indexOf(QLatin1String("$[")); at >= 0;
         at = text.indexOf(QLatin1String("$["), at + 2)) {
      const auto end = text.indexOf(QLatin1Char(']'), at);
      if (end < 0)
        break;
      found += text.mid(at, end + 1 - at);
    }
    return found;
  }

  QHash<QString, QStringList> references_;
};

const AbstractFeatureSchema& Fields() { return AbstractFeatureSchema::GetSingleton(); }

bool IsUniqueOnHomeService(const QString& id, const QString& url) {
  return id.startsWith(QLatin1String("zUnique")) &&
         (url.startsWith(QLatin1String("http://")) || url.startsWith(QLatin1String("https://"))) &&
         url.indexOf(QLatin1String(kHomeDomainSuffix)) > 0;
}

bool SameOpacity(float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); }

} // namespace

AbstractFeatureSchema::AbstractFeatureSchema()
    : SchemaT("AbstractFeature", nullptr, Namespace::kKml),
      snippetObject(*this, QString(), Snippet::GetClassSchema(),
                    OffsetOf(&AbstractFeature::snippetObject_)),
      abstractView(*this, QString(), AbstractView::GetClassSchema(),
                   OffsetOf(&AbstractFeature::abstractView_)),
      timePrimitive(*this, QString(), TimePrimitive::GetClassSchema(),
                    OffsetOf(&AbstractFeature::timePrimitive_)),
      inlineStyleSelector(*this, QString(), StyleSelector::GetClassSchema(),
                          OffsetOf(&AbstractFeature::inlineStyleSelector_)),
      region(*this, QString(), Region::GetClassSchema(), OffsetOf(&AbstractFeature::region_)),
      extendedData(*this, QString(), ExtendedData::GetClassSchema(),
                   OffsetOf(&AbstractFeature::extendedData_)) {
  opacity.SetDefault(1.0F);

  const auto react = [this](const Field& field, Reaction reaction) {
    reactions_.at(field.GetIndex()) = reaction;
  };
  react(styleUrl, &AbstractFeature::OnStyleUrlChanged);
  react(region, &AbstractFeature::UpdateInheritedRegion);
  react(inlineStyleSelector, &AbstractFeature::OnInlineStyleSelectorChanged);
  react(visibility, &AbstractFeature::OnVisibilityChanged);
  react(snippetObject, &AbstractFeature::OnSnippetObjectChanged);
  react(snippet, &AbstractFeature::OnSnippetChanged);
  react(opacity, &AbstractFeature::OnOpacityChanged);
  react(timePrimitive, &AbstractFeature::OnTimePrimitiveChanged);
  react(balloonVisibility, &AbstractFeature::OnBalloonVisibilityChanged);
}

const Schema& AbstractFeature::GetClassSchema() { return AbstractFeatureSchema::GetSingleton(); }

AbstractFeature::AbstractFeature(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {
  init();
}

AbstractFeature::~AbstractFeature() {
  s_rem_timed_feature(*this);
  ReleaseReferencedStyleSelector();
  ReleaseFlattenedStyleSelector();
}

void AbstractFeature::init() {
  const AbstractFeatureSchema& fields = Fields();
  if (const RefPtr<AbstractView> former = std::move(abstractView_))
    former->RemOwner(*this);
  styleMode_ = 0;
  opacity_ = inheritedOpacity_ = fields.opacity.GetDefault();
  SetBit(kBitVisibility, fields.visibility.GetDefault());
  SetBit(kBitInheritedVisibility, fields.visibility.GetDefault());
  SetBit(kBitOpen, fields.open.GetDefault());
  SetBit(kBitNewSnippet, false);
  // Trees are large: a feature reports changes to its owners only where a client asks for it.
  SetBit(kBitNotifySubField, false);
  SetBit(kBitInheritedNotifySubField, false);
  inheritedTime_ = nullptr;
  inheritedRegion_ = nullptr;
  if (IsUniqueOnHomeService(GetId(), GetUrl()))
    SetBit(kBitUnique, true);
}

void AbstractFeature::SetName(const QString& name) { Fields().name.CheckSet(*this, name); }

void AbstractFeature::SetName(const char* name, bool utf8) {
  SetName(utf8 ? QString::fromUtf8(name) : QString::fromLatin1(name));
}

void AbstractFeature::SetTimePrimitive(TimePrimitive* time) {
  Fields().timePrimitive.CheckSet(*this, time);
}

QString AbstractFeature::GetSnippet() const {
  return snippetObject_ && !HasNewSnippet() ? snippetObject_->GetText() : snippet_;
}

int AbstractFeature::GetMaxSnippetLines() const {
  if (snippetObject_ && !HasNewSnippet())
    return snippetObject_->GetMaxLines();
  if (HasNewSnippet() && snippet_.isEmpty())
    return 0;
  return getRenderStyle(styleMode_)->GetListStyle()->GetMaxSnippetLines();
}

void AbstractFeature::SetSnippetIfExists(const QString& text) {
  const DeletionDeferrer deferrer;
  if (snippetObject_ && !HasNewSnippet()) {
    snippetObject_->SetText(text);
    NotifyFieldChanged(Fields().snippetObject);
  } else if (HasNewSnippet() || !text.isEmpty()) {
    snippet_ = text;
    Fields().snippet.NotifyFieldChanged(*this);
  }
}

void AbstractFeature::SetIsOpen(bool open) { Fields().open.CheckSet(*this, open); }

void AbstractFeature::SetVisibility(bool visible) {
  if (GetVisibility() == visible)
    return;
  const DeletionDeferrer deferrer;
  Fields().visibility.SetTypedObject(*this, visible);
  if (!GetBit(kBitDeferredCreate) && System::IsMainThread())
    VisibilityObserver::Notify(*this);
}

void AbstractFeature::SetHiddenByLod(bool hidden) {
  if (GetBit(kBitHiddenByLod) == hidden)
    return;
  SetBit(kBitHiddenByLod, hidden);
  NotifyFieldChanged(Fields().visibility);
}

void AbstractFeature::SetForceVisible(bool force) {
  if (GetForceVisible() == force)
    return;
  const DeletionDeferrer deferrer;
  const bool former = isVisible();
  SetBit(kBitForceVisible, force);
  if (isVisible() != former)
    NotifyFieldChanged(Fields().visibility);
  VisibilityObserver::Notify(*this);
}

bool AbstractFeature::isVisible(float* opacity, Region** region) const {
  if (opacity)
    *opacity = inheritedOpacity_;
  if (region)
    *region = inheritedRegion_;
  return GetForceVisible() || (GetBit(kBitInheritedVisibility) && Time::isVisible(*this));
}

void AbstractFeature::EnsureVisible() {
  const DeletionDeferrer deferrer;
  SetVisibility(true);
  for (RefPtr<AbstractFeature> folder = GetParent(); folder; folder = folder->GetParent())
    folder->SetVisibility(true);
}

void AbstractFeature::UpdateInheritedTime() {
  const AbstractFolder* parent = GetParent();
  TimePrimitive* const time = timePrimitive_ ? timePrimitive_.get()
                              : parent       ? parent->GetInheritedTime()
                                             : nullptr;
  if (time == inheritedTime_)
    return;
  inheritedTime_ = time;
  NotifyInheritedTimeChanged();
}

void AbstractFeature::UpdateInheritedRegion() {
  const AbstractFolder* parent = GetParent();
  Region* const region = region_ ? region_.get() : parent ? parent->GetInheritedRegion() : nullptr;
  if (region == inheritedRegion_)
    return;
  inheritedRegion_ = region;
  NotifyInheritedRegionChanged();
}

void AbstractFeature::UpdateInheritedOpacity() {
  const AbstractFolder* parent = GetParent();
  const float opacity = parent ? opacity_ * parent->GetInheritedOpacity() : opacity_;
  if (SameOpacity(opacity, inheritedOpacity_))
    return;
  inheritedOpacity_ = opacity;
  NotifyInheritedOpacityChanged();
}

AbstractFolder* AbstractFeature::GetParent() const {
  SchemaObject* const owner = GetOwner(0);
  return owner && owner->isOfType(AbstractFolder::GetClassSchema())
             ? static_cast<AbstractFolder*>(owner)
             : nullptr;
}

AbstractFeature* AbstractFeature::GetPreviousSiblingNode() const {
  AbstractFolder* const parent = GetParent();
  const int index = parent ? parent->FindChild(*this) : -1;
  return index > 0 ? parent->GetChild(index - 1) : nullptr;
}

AbstractFeature* AbstractFeature::GetNextSiblingNode() const {
  AbstractFolder* const parent = GetParent();
  const int index = parent ? parent->FindChild(*this) : -1;
  return index >= 0 && index + 1 < parent->GetChildCount() ? parent->GetChild(index + 1) : nullptr;
}

bool AbstractFeature::IsDescendantOf(const AbstractFolder& folder) const {
  const AbstractFolder* above = GetParent();
  while (above && above != &folder)
    above = above->GetParent();
  return above != nullptr;
}

bool AbstractFeature::IsSelfOrDescendantOf(const AbstractFolder& folder) const {
  return this == &folder || IsDescendantOf(folder);
}

void AbstractFeature::SetParent(AbstractFolder* folder) {
  if (folder)
    folder->AddChild(*this);
  else if (AbstractFolder* const parent = GetParent())
    parent->RemChild(*this);
}

AbstractFeature::ProcessingMode AbstractFeature::GetProcessingMode() const {
  if (!GetBit(kBitProcessingMode))
    return 0;
  return GetBit(kBitProcessingModeHigh) ? 1 : 2;
}

void AbstractFeature::SetProcessingMode(ProcessingMode mode) {
  if (mode < 0 || mode > 2)
    return;
  SetBit(kBitProcessingMode, mode != 0);
  if (mode != 0)
    SetBit(kBitProcessingModeHigh, mode == 1);
}

std::uint32_t AbstractFeature::GetFalseColor() const {
  auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this));
  std::uint32_t hash = 0;
  for (int i = 0; i < 5; ++i) {
    hash = (hash >> 15) + hash * 261 + (address & 255);
    address >>= 8;
  }
  return hash;
}

QString AbstractFeature::ApplyEntityReplacement(const QString& text) const {
  QString result = text;
  const qint64 limit = std::max(static_cast<int>(text.size()), kMaxReplaced);
  FilledReferences filled;
  for (int count = 0; count < kMaxReplacements; ++count) {
    const auto start = result.indexOf(QLatin1String("$["));
    if (start < 0)
      break;
    const auto end = result.indexOf(QLatin1Char(']'), start);
    const auto next = result.indexOf(QLatin1String("$["), start + 2);
    if (end < 0 || (next >= 0 && next < end))
      break;

    const QString token = result.mid(start, end + 1 - start);
    const QString key = token.mid(2, token.size() - 3);
    QString value;
    if (key == QLatin1String("name"))
      value = name_;
    else if (key == QLatin1String("id"))
      value = GetId();
    else if (!extendedData_ || !extendedData_->FindEntityValue(key, &value))
      break;

    const qint64 growth = qint64{value.size() - token.size()} * result.count(token);
    if (!filled.Add(token, value) || result.size() + growth > limit)
      break;
    result.replace(token, value);
  }
  return result;
}

void AbstractFeature::SetRemoteDescriptionUrl(const QString& url) {
  if (url.isEmpty())
    remoteDescription_.reset();
  else if (!remoteDescription_ || remoteDescription_->url != url)
    remoteDescription_ = std::make_unique<RemoteDescription>(RemoteDescription{url, QString()});
}

void AbstractFeature::SetRemoteDescriptionText(const QString& text) {
  Q_ASSERT(remoteDescription_);
  if (remoteDescription_)
    remoteDescription_->text = text;
}

QString AbstractFeature::GetRemoteDescriptionUrl() const {
  return remoteDescription_ ? remoteDescription_->url : QString();
}

QString AbstractFeature::GetRemoteDescriptionText() const {
  return remoteDescription_ ? remoteDescription_->text : QString();
}

void AbstractFeature::NotifyInheritedRegionChanged() { NotifyFieldChanged(Fields().region); }

void AbstractFeature::NotifyInheritedTimeChanged() { NotifyFieldChanged(Fields().timePrimitive); }

void AbstractFeature::NotifyInheritedOpacityChanged() { NotifyFieldChanged(Fields().opacity); }

void AbstractFeature::UpdateRevisionId(long revision) {
  SetRevision(static_cast<std::uint32_t>(revision));
}

void AbstractFeature::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

bool AbstractFeature::GetTimeRange(DateTime& begin, DateTime& end, int* instants,
                                   int* spans) const {
  if (!timePrimitive_ || !GetBit(kBitVisibility) || !GetBit(kBitInheritedVisibility))
    return false;
  if (int* const counter = timePrimitive_->IsSpan() ? spans : instants)
    ++*counter;
  for (const DateTime* const time : {timePrimitive_->GetEnd(), timePrimitive_->GetBegin()}) {
    if (!time)
      continue;
    DateTime utc = *time;
    utc.AdjustTimeZone(0, 0);
    if (begin.isUndefined() || utc < begin)
      begin = utc;
    if (end.isUndefined() || end < utc)
      end = utc;
  }
  return true;
}

bool AbstractFeature::GetWorldTimeRange(DateTime& begin, DateTime& end, int* instants,
                                        int* spans) {
  for (int* const counter : {instants, spans}) {
    if (counter)
      *counter = 0;
  }
  return TimedFeatures::GetRange(begin, end, instants, spans);
}

bool AbstractFeature::IsTimedFeature() const { return timePrimitive_ != nullptr; }

void AbstractFeature::s_add_timed_feature(AbstractFeature& feature) {
  if (feature.GetBit(kBitTimedFeature))
    return;
  feature.SetBit(kBitTimedFeature, true);
  TimedFeatures::Add(feature);
  Time::NotifyWorldRangeChanged();
}

void AbstractFeature::s_rem_timed_feature(AbstractFeature& feature) {
  if (!feature.GetBit(kBitTimedFeature))
    return;
  feature.SetBit(kBitTimedFeature, false);
  TimedFeatures::Remove(feature);
  Time::NotifyWorldRangeChanged();
}

void AbstractFeature::SetSnippetObject(Snippet* snippet) {
  const DeletionDeferrer deferrer;
  Fields().snippet.SetTypedObject(*this, QString());
  SetBit(kBitNewSnippet, false);
  Fields().snippetObject.set(*this, snippet, -1);
}

void AbstractFeature::UpdateOldSnippet() const {
  if (snippetObject_ && HasNewSnippet()) {
    snippetObject_->SetText(snippet_);
    snippetObject_->SetMaxLines(GetMaxSnippetLines());
  }
}

void AbstractFeature::WriteKml(WriteState& state) const {
  UpdateOldSnippet();
  SchemaObject::WriteKml(state);
}

void AbstractFeature::WriteStylesAndSchemas(WriteState& state, const QString& path) const {
  state.PushStylesAndSchemas();
  CollectStylesAndSchemas(state);
  state.hoist().AssignStyleIds();
  if (state.HasStylesOrSchemas()) {
    // Nobody hears of it, who might change what has been collected.
    const NotificationDisabler disabler;
    const RefPtr<Document> wrapper(new (HeapManager::GetTransientHeap())
                                       Document(KmlId(), QString()));
    wrapper->SetName(QFileInfo(path).fileName());
    wrapper->WriteKmlStylesSchemas(state, this);
  } else {
    WriteKml(state);
  }
  state.PopStylesAndSchemas();
}

const Field* AbstractFeature::FindObject(const SchemaObject& child, int* index) const {
  if (&child == referencedStyleSelector_.get()) {
    if (index)
      *index = 0;
    return &Fields().styleUrl;
  }
  return SchemaObject::FindObject(child, index);
}

bool AbstractFeature::IsGiven(const Field& field) const {
  return &field != &Fields().snippet || GetBit(kBitNewSnippet);
}

void AbstractFeature::SetNotGiven(const Field& field) {
  if (&field == &Fields().snippet)
    SetBit(kBitNewSnippet, false);
}

void AbstractFeature::NotifyFieldChanged(const Field& field) {
  const AbstractFeatureSchema& fields = Fields();
  const auto reaction =
      &field.GetSchema() == &fields ? fields.reactions_.at(field.GetIndex()) : nullptr;
  if (!reaction) {
    SchemaObject::NotifyFieldChanged(field);
    return;
  }
  const DeletionDeferrer deferrer;
  (this->*reaction)();
  SchemaObject::NotifyFieldChanged(field);
}

void AbstractFeature::OnVisibilityChanged() {
  if (IsTimedFeature())
    Time::NotifyWorldRangeChanged();
  UpdateInheritedVisibility();
}

void AbstractFeature::OnSnippetChanged() { SetBit(kBitNewSnippet, true); }

void AbstractFeature::OnSnippetObjectChanged() {
  if (snippetObject_ && snippetObject_->GetText().isEmpty())
    snippetObject_->SetMaxLines(0);
}

void AbstractFeature::OnOpacityChanged() {
  if (IsTimedFeature())
    Time::NotifyWorldRangeChanged();
  UpdateInheritedOpacity();
}

void AbstractFeature::OnTimePrimitiveChanged() {
  if (IsTimedFeature())
    s_add_timed_feature(*this);
  else
    s_rem_timed_feature(*this);
  Time::NotifyWorldRangeChanged();
  UpdateInheritedTime();
}

void AbstractFeature::OnBalloonVisibilityChanged() { BalloonVisibilityObserver::Notify(*this); }

void AbstractFeature::NotifyInheritedVisibilityChanged() {
  const DeletionDeferrer deferrer;
  if (region_)
    region_->UpdateInheritedVisibility();
  SchemaObject::NotifyInheritedVisibilityChanged();
  NotifyFieldChanged(Fields().visibility);
}

void AbstractFeature::NotifyOwnerChanged() {
  const DeletionDeferrer deferrer;
  SchemaObject::NotifyOwnerChanged();
  UpdateInheritedRegion();
  UpdateInheritedTime();
  UpdateInheritedOpacity();
  if (GetBit(kBitInheritanceWaits) && HandsDown())
    HandDown();
}

void AbstractFeature::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema()))
    styleMode_ = static_cast<const AbstractFeature&>(src).styleMode_;
  NotifyFieldChanged(Fields().styleUrl); // the copy finds the target of its reference itself
  SchemaObject::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
