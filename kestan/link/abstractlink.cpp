#include "kestan/link/abstractlink.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/enum.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/linktemplate.h"
#include "kestan/link/viewparams.h"
#include "kestan/write/writestate.h"

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

template class SchemaT<AbstractLink, NoInstancePolicy, NewDerivedPolicy>;

namespace {

const AbstractLinkSchema& Fields() { return AbstractLinkSchema::GetSingleton(); }

} // namespace

void ViewFormatField::WriteKml(const SchemaObject& object, WriteState& state) const {
  WriteValue(object, state, true);
}

AbstractLinkSchema::AbstractLinkSchema() : SchemaT("AbstractLink", nullptr, Namespace::kKml) {
  refreshInterval.SetDefault(4.0F);
  viewRefreshTime.SetDefault(4.0F);
  viewBoundScale.SetDefault(1.0F);
  viewFormat.SetDefault(QLatin1String(kDefaultViewFormat));
  httpQuery.SetDefault(QString());
  urlFields_ = bound.GetMaskBit() | viewRefreshMode.GetMaskBit() | viewBoundScale.GetMaskBit() |
               viewFormat.GetMaskBit() | href.GetMaskBit() | httpQuery.GetMaskBit();
}

Enum& AbstractLinkSchema::RefreshModes() {
  static Enum modes({{AbstractLink::kOnChange, "onChange"},
                     {AbstractLink::kOnInterval, "onInterval"},
                     {AbstractLink::kOnExpire, "onExpire"}},
                    false);
  return modes;
}

Enum& AbstractLinkSchema::ViewRefreshModes() {
  static Enum modes({{AbstractLink::kNever, "never"},
                     {AbstractLink::kOnRequest, "onRequest"},
                     {AbstractLink::kOnStop, "onStop"},
                     {AbstractLink::kOnRegion, "onRegion"}},
                    false);
  return modes;
}

const Schema& AbstractLink::GetClassSchema() { return AbstractLinkSchema::GetSingleton(); }

AbstractLink::AbstractLink(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractLink::~AbstractLink() { NotifyPreDelete(); } // of a class that a document makes

void AbstractLink::SetHref(const QString& href) {
  Fields().href.CheckSet(*this, href, fieldsSpecified_);
}

void AbstractLink::ReadHref(const QString& text) {
  const Displacement displacement(*this, Fields().href,
                                  (fieldsSpecified_ & Fields().href.GetMaskBit()) != 0);
  SetHref(text);
}

void AbstractLink::SetViewBoundScale(float scale) {
  Fields().viewBoundScale.CheckSet(*this, scale, fieldsSpecified_);
}

void AbstractLink::SetViewFormat(const QString& format) {
  // The text alone doesn't tell an empty format from one that was never given.
  Fields().viewFormat.SetTypedObject(*this, format);
}

void AbstractLink::SetErrorHandle(ErrorHandle handle) {
  if (handle == errorHandle_)
    return;
  errorHandle_ = handle;
  NotifyFieldChanged(Fields().errorHandle);
}

void AbstractLink::refresh() {
  refreshCounter_ = static_cast<int>(static_cast<unsigned>(refreshCounter_) + 1U);
  NotifyFieldChanged(Fields().refreshCounter);
}

void AbstractLink::SetDeprecatedRefreshPeriod(int seconds) {
  const AbstractLinkSchema& fields = Fields();
  const bool repeats = seconds >= 1;
  fields.refreshMode.CheckSet(*this, repeats ? kOnInterval : kOnChange, fieldsSpecified_);
  if (repeats)
    fields.refreshInterval.CheckSet(*this, static_cast<float>(seconds), fieldsSpecified_);
}

void AbstractLink::setViewParams(const ViewParams& view) {
  if (GetViewParams().IsSameView(view)) {
    ObjectObserver::SetSpecified(*this, fieldsSpecified_,
                                 fieldsSpecified_ | Fields().bound.GetMaskBit());
    return;
  }
  if (view_)
    *view_ = view;
  else
    view_ = std::make_unique<ViewParams>(view);
  NotifyFieldChanged(Fields().bound);
}

const ViewParams& AbstractLink::GetViewParams() const {
  static const ViewParams none;
  return view_ ? *view_ : none;
}

void AbstractLink::GetScaledBbox(double& north, double& south, double& east, double& west) const {
  const ViewParams& view = GetViewParams();
  const double scale = static_cast<double>(viewBoundScale_);
  const double halfWidth = (view.east - view.west) / 2.0 * scale;
  const double halfHeight = (view.north - view.south) / 2.0 * scale;
  const double x = (view.east + view.west) / 2.0;
  const double y = (view.north + view.south) / 2.0;
  // Comparisons that a NaN fails give the whole globe.
  if (halfWidth <= 1.0) {
    west = x - halfWidth;
    east = x + halfWidth;
    if (west > 1.0 && east > 1.0) {
      west -= 2.0;
      east -= 2.0;
    }
  } else {
    west = -1.0;
    east = 1.0;
  }
  south = y - halfHeight >= -0.5 ? y - halfHeight : -0.5;
  north = y + halfHeight <= 0.5 ? y + halfHeight : 0.5;
}

QString AbstractLink::GetResourceUrl() const {
  return href_.isEmpty() ? QString() : MakeAbsoluteUrl(GetBaseUrl(), href_);
}

QString AbstractLink::ComposeQuery() const {
  QString query = ExpandHttpQuery(httpQuery_);
  QString format;
  if (fieldsSpecified_ & Fields().viewFormat.GetMaskBit())
    format = viewFormat_;
  else if (viewRefreshMode_ == kOnRequest || viewRefreshMode_ == kOnStop)
    format = QLatin1String(kDefaultViewFormat);
  if (format.isEmpty())
    return query;
  if (!query.isEmpty() && !query.endsWith(QLatin1Char('&')))
    query += QLatin1Char('&');
  ViewParams view = GetViewParams();
  GetScaledBbox(view.north, view.south, view.east, view.west);
  return query + ExpandViewFormat(format, view);
}

QString AbstractLink::GetAbsoluteUrl() const {
  if (!urlDirty_)
    return absoluteUrl_;
  const QString url = GetResourceUrl();
  return GGetUrlType(url) == kUrlNetwork ? AppendQuery(url, ComposeQuery()) : url;
}

void AbstractLink::KeepAbsoluteUrl() {
  absoluteUrl_ = GetAbsoluteUrl();
  urlDirty_ = false;
}

bool AbstractLink::HasLongQuery() const {
  constexpr int kLong = 1024;
  return httpQuery_.size() > kLong || viewFormat_.size() > kLong;
}

void AbstractLink::MarkChanged(const Field& field) {
  const AbstractLinkSchema& fields = Fields();
  if (&field.GetSchema() == &fields && (field.GetMaskBit() & fields.GetUrlFields()))
    urlDirty_ = true;
  fieldsSpecified_ |= field.GetMaskBit();
}

bool AbstractLink::IsGiven(const Field& field) const {
  return (fieldsSpecified_ & field.GetMaskBit()) != 0;
}

void AbstractLink::SetNotGiven(const Field& field) {
  ObjectObserver::SetSpecified(*this, fieldsSpecified_, fieldsSpecified_ & ~field.GetMaskBit());
}

void AbstractLink::NotifyFieldChanged(const Field& field) {
  MarkChanged(field);
  SchemaObject::NotifyFieldChanged(field);
}

void AbstractLink::merge(const SchemaObject& a, const SchemaObject& b) {
  const DeletionDeferrer deferrer;
  const unsigned specified = a.GetFieldsSpecified() | b.GetFieldsSpecified();
  SchemaObject::merge(a, b);
  fieldsSpecified_ = specified;
}

void AbstractLink::CopyNonFieldStuff(const SchemaObject& src) {
  const DeletionDeferrer deferrer;
  if (src.isOfType(GetClassSchema())) {
    const auto& link = static_cast<const AbstractLink&>(src);
    if (link.view_ || view_)
      setViewParams(link.GetViewParams());
    // Filling the fields one by one has marked them all.
    fieldsSpecified_ = link.fieldsSpecified_;
    urlDirty_ = true;
  }
  SchemaObject::CopyNonFieldStuff(src);
}

void AbstractLink::WriteKml(WriteState& state) const {
  // Here the object is its own scratch copy: the fields write what the members hold.
  auto& self = const_cast<AbstractLink&>(*this);
  QString written = state.RegisterLink(*this);
  std::swap(self.href_, written);
  WriteKmlFieldsSpecified(state, GetFieldsSpecified());
  std::swap(self.href_, written);
}

} // namespace vorrel::kestan
