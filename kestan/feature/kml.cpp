#include "kestan/feature/kml.h"

#include "kestan/core/kestanoptions.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/feature/kmlschema.h"
#include "kestan/host/tr.h"
#include "kestan/link/networklinkcontrol.h" // child classes, for the field table
#include "kestan/link/tarrowlink.h"
#include "kestan/theme/theme.h"

#include <mutex>

namespace vorrel::kestan {

template class SchemaT<Kml, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const QLatin1String kTarget("target=");

/// An object has 16 bits for the index of its target, and all of them set mean none.
constexpr std::size_t kMaxHintTargets = 0xFFFF;

/// Targets live as long as the process. A longer hint names none.
constexpr int kMaxHint = 256;

} // namespace

KmlSchema::KmlSchema()
    : SchemaT("kml", nullptr, Namespace::kKml),
      link(*this, QString(), TarrowLink::GetClassSchema(), OffsetOf(&Kml::link_)),
      control(*this, QString(), NetworkLinkControl::GetClassSchema(), OffsetOf(&Kml::control_)),
      feature(*this, QString(), AbstractFeature::GetClassSchema(), OffsetOf(&Kml::feature_)),
      theme(*this, QString(), Theme::GetClassSchema(), OffsetOf(&Kml::theme_)) {}

void KmlSchema::AddHintTargets(const mmvector<QString>& targets) const {
  const std::lock_guard<SpinLock> guard(lock_);
  for (const QString& target : targets)
    AddHintTarget(target);
}

/// Needs the lock.
int KmlSchema::AddHintTarget(const QString& target) const {
  const auto known = hintTargetIds_.constFind(target);
  if (known != hintTargetIds_.constEnd())
    return *known;
  if (target.isEmpty() || hintTargets_.size() == kMaxHintTargets)
    return -1;
  const int id = static_cast<int>(hintTargets_.size());
  hintTargets_.push_back(target);
  hintTargetIds_.insert(target, id);
  return id;
}

int KmlSchema::GetHintTargetId(const QString& text) const {
  const auto first = text.indexOf(kTarget);
  if (first < 0 || text.size() > kMaxHint)
    return -1;
  const std::lock_guard<SpinLock> guard(lock_);
  // The oldest target that stands behind any "target=".
  int oldest = -1;
  for (auto at = first; at >= 0; at = text.indexOf(kTarget, at + 1)) {
    const auto begin = at + kTarget.size();
    for (int length = 1; length <= text.size() - begin; ++length) {
      const int id =
          hintTargetIds_.value(QString::fromRawData(text.constData() + begin, length), -1);
      if (id >= 0 && (oldest < 0 || id < oldest))
        oldest = id;
    }
  }
  if (oldest >= 0)
    return oldest;
  const auto begin = first + kTarget.size();
  const auto comma = text.indexOf(QLatin1Char(','));
  return AddHintTarget(text.mid(begin, comma < begin ? -1 : comma - begin));
}

QString KmlSchema::GetHintTargetString(int id) const {
  const std::lock_guard<SpinLock> guard(lock_);
  return id >= 0 && static_cast<std::size_t>(id) < hintTargets_.size()
             ? hintTargets_[static_cast<std::size_t>(id)]
             : QString();
}

QString KmlSchema::ComposeHintString(int id) const {
  QString target = GetHintTargetString(id);
  if (target.isEmpty())
    target = KestanOptionsContext::kestanOptions.hintTarget.Get();
  return target.isEmpty() ? QString() : kTarget + target;
}

const Schema& Kml::GetClassSchema() { return KmlSchema::GetSingleton(); }

Kml::Kml(const KmlId& id, const QString& baseUrl) : SchemaObject(GetClassSchema(), id, baseUrl) {
  SetBit(kBitInheritedNotifySubField, false);
  NotifyPostCreate();
}

Kml::~Kml() { NotifyPreDelete(); }

void Kml::WriteKml(WriteState& state) const {
  for (const Field* field : GetSchema().GetSerializedFields())
    WriteField(*field, state);
  if (!feature_) // which has been given what no class understands
    WriteUnknownFields(state);
}

void Kml::WriteStylesAndSchemas(WriteState& state, const QString& path) const {
  if (!feature_) {
    WriteKml(state);
    return;
  }
  for (const Field* field : GetSchema().GetSerializedFields()) {
    if (field == &KmlSchema::GetSingleton().feature)
      feature_->WriteStylesAndSchemas(state, path);
    else
      WriteField(*field, state);
  }
}

void Kml::NotifyFieldChanged(const Field& field) {
  const KmlSchema& fields = KmlSchema::GetSingleton();
  QString error;
  if (&field == &fields.feature) {
    if (seenFeature_ && feature_)
      error = tr("Only a single root feature allowed within <kml> tag");
    seenFeature_ = feature_ != nullptr;
  } else if (&field == &fields.theme) {
    if (seenTheme_ && theme_)
      error = tr("Only a single root theme allowed within <kml> tag");
    seenTheme_ = theme_ != nullptr;
  } else if (&field == &fields.hint) {
    SetHintTarget(static_cast<unsigned>(fields.GetHintTargetId(hint_)));
  }
  if (error.isEmpty())
    SchemaObject::NotifyFieldChanged(field);
  else
    ThreadContext::GetCurrent()->fatalText = error;
}

} // namespace vorrel::kestan
