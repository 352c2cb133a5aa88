#include "kestan/tour/animatedupdate.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/tour/animatedupdateschema.h"
#include "kestan/tour/tourprimitivevisitor.h"

namespace vorrel::kestan {

template class SchemaT<AnimatedUpdate, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Update>;

namespace {

const AnimatedUpdateSchema& Fields() { return AnimatedUpdateSchema::GetSingleton(); }

/// Recoverable errors are passed over meanwhile.
class Silence {
public:
  Silence() { Setting().Set(0); }
  ~Silence() { Setting().Set(former_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

private:
  static IntSetting& Setting() { return KestanOptionsContext::kestanOptions.kmlErrorHandling; }

  const int former_ = Setting().Get();
};

RefPtr<AnimatedUpdate> Create(const QString& baseUrl, const QString& targetHref,
                              const QString& rawHref, const QString& content, double duration) {
  const RefPtr<Update> update(new Update(KmlId(), baseUrl));
  update->SetTargetHref(targetHref, rawHref);
  update->unknownData().fields += content;
  RefPtr<AnimatedUpdate> animated(new AnimatedUpdate(KmlId(), QString()));
  Fields().update.SetTypedObject(*animated, update);
  animated->SetDuration(duration);
  return animated;
}

} // namespace

AnimatedUpdateSchema::AnimatedUpdateSchema()
    : SchemaT("AnimatedUpdate", &TourPrimitive::GetClassSchema(), Namespace::kExt) {
  delayedStart.SetDefault(0.0);
}

const Schema& AnimatedUpdate::GetClassSchema() { return AnimatedUpdateSchema::GetSingleton(); }

AnimatedUpdate::AnimatedUpdate(const KmlId& id, const QString& baseUrl)
    : TourPrimitive(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

AnimatedUpdate::~AnimatedUpdate() { NotifyPreDelete(); }

RefPtr<AnimatedUpdate> AnimatedUpdate::CreateUpdate(const QString& targetHref,
                                                    const QString& rawHref, const QString& content,
                                                    double duration) {
  return Create(QString(), targetHref, rawHref, content, duration);
}

RefPtr<AnimatedUpdate> AnimatedUpdate::CreateUpdate(AbstractFeature* feature,
                                                    const QString& fieldName, const QString& value,
                                                    double duration, const QString& rawHref) {
  if (!feature)
    return {};
  feature->AssignPermanentUniqueId(feature->getType());
  const QString content = QStringLiteral("<Change><%1 targetId=\"%2\"><%3>%4</%3></%1></Change>")
                              .arg(feature->GetPrefixedName(), feature->GetId().toHtmlEscaped(),
                                   fieldName.toHtmlEscaped(), value.toHtmlEscaped());
  return Create(feature->GetUrl(), feature->GetUrl(), rawHref, content, duration);
}

void AnimatedUpdate::SetDelayedStart(double seconds) {
  Fields().delayedStart.CheckSet(*this, seconds);
}

void AnimatedUpdate::SetStart() {
  const DeletionDeferrer deferrer;
  if (const RefPtr<Update> update = update_) {
    const Silence silence;
    update->SetKeepEdits(true);
    update->CreateEdits(nullptr);
  }
}

void AnimatedUpdate::Accept(TourPrimitiveVisitor& visitor) { visitor.Visit(*this); }

void AnimatedUpdate::ConstAccept(TourPrimitiveVisitor& visitor) const { visitor.ConstVisit(*this); }

} // namespace vorrel::kestan
