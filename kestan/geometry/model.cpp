#include "kestan/geometry/model.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryschema.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/modelschema.h"
#include "kestan/host/convert.h"
#include "kestan/host/resourcedictionary.h"
#include "kestan/host/tr.h"
#include "kestan/host/url.h"
#include "kestan/link/fetchobserver.h" // who hears of the fetch
#include "kestan/link/link.h"          // the model's file
#include "kestan/write/writestate.h"   // what fails in an archive

#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace vorrel::kestan {

template class SchemaT<Model, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Model>;

namespace {

const ModelSchema& Fields() { return ModelSchema::GetSingleton(); }

bool IsFinite(const Vec3<double>& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Closer than any model is large.
bool IsNear(const Vec3<double>& a, const Vec3<double>& b) {
  return std::fabs(a.x - b.x) < 1.0 && std::fabs(a.y - b.y) < 1.0;
}

} // namespace

ModelSchema::ModelSchema() : SchemaT("Model", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& Model::GetClassSchema() { return ModelSchema::GetSingleton(); }

Model::Model(const KmlId& id, const QString& baseUrl) : Geometry(GetClassSchema(), id, baseUrl) {
  InitChildElements();
  Complete(nullptr);
}

Model::Model(const Vec3<double>& coord, AbstractFeature* feature, const KmlId& id,
             const QString& baseUrl)
    : Geometry(GetClassSchema(), id, baseUrl) {
  InitChildElements();
  {
    const ConstructionGuard building(*this);
    SetCoord(coord);
  }
  Complete(feature);
}

Model::~Model() { NotifyPreDelete(); }

/// The parts have no id of their own: the model's would push other objects out of their places.
void Model::InitChildElements() {
  const ConstructionGuard building(*this);
  const DeletionDeferrer deferrer;
  const KmlId id(QString(), GetUrl());
  const QString& base = GetBaseUrl();
  Fields().location.Replace(*this, RefPtr<Location>(new Location(id, base)).get());
  Fields().orientation.Replace(*this, RefPtr<Orientation>(new Orientation(id, base)).get());
  Fields().scale.Replace(*this, RefPtr<Scale>(new Scale(id, base)).get());
  Fields().link.Replace(*this, RefPtr<Link>(new Link(id, base)).get());
}

bool Model::IsMadeUp(const SchemaObject& model, const SchemaObject* part) {
  if (!part || !model.GetBit(kBitWasRead) || part->GetBit(kBitWasRead) ||
      !part->GetId().isEmpty() || part->HasUnknownData())
    return false;
  const mmvector<Field*>& fields = part->GetSchema().GetSerializedFields();
  return std::none_of(fields.begin(), fields.end(), [part](const Field* field) {
    return (part->GetFieldsSpecified() & field->GetMaskBit()) != 0;
  });
}

void Model::SetLocation(const RefPtr<Location>& location) {
  Fields().location.CheckSet(*this, location.get());
}

void Model::SetOrientation(const RefPtr<Orientation>& orientation) {
  Fields().orientation.CheckSet(*this, orientation.get());
}

void Model::SetScale(const RefPtr<Scale>& scale) { Fields().scale.CheckSet(*this, scale.get()); }

void Model::SetModelDataLink(const RefPtr<Link>& link) {
  Fields().link.CheckSet(*this, link.get());
}

Vec3<double> Model::GetCoord() const {
  return convert::LLAToNorm(location_ ? location_->GetLLA() : Vec3<double>());
}

void Model::SetCoord(const Vec3<double>& coord) {
  const Vec3<double> lla = convert::NormToLLA(coord);
  if (!location_ || (lla == location_->GetLLA() && !location_->HasKeptValues()))
    return;
  const DeletionDeferrer deferrer;
  location_->SetLLA(lla);
  NotifyCoordsChanged();
}

Vec3<double> Model::GetOrientationVec() const {
  return orientation_ ? orientation_->GetAngles() : Vec3<double>();
}

void Model::SetOrientation(const Vec3<double>& angles) {
  if (!orientation_ || (angles == orientation_->GetAngles() && !orientation_->HasKeptValues()))
    return;
  const DeletionDeferrer deferrer;
  orientation_->SetAngles(angles);
  NotifyFieldChanged(Fields().orientation);
  BoundChanged();
}

Vec3<double> Model::GetScaleVec() const {
  return scale_ ? scale_->GetVec() : Vec3<double>(1.0, 1.0, 1.0);
}

void Model::SetScale(const Vec3<double>& factors) {
  if (!scale_ || (factors == scale_->GetVec() && !scale_->HasKeptValues()))
    return;
  const DeletionDeferrer deferrer;
  scale_->SetVec(factors);
  NotifyFieldChanged(Fields().scale);
  BoundChanged();
}

void Model::SetBBoxExtension(const BoundingBox<double>& box) {
  constexpr double kFar = 1e25;
  if (box == bboxExtension_ || !IsFinite(box.low) || !IsFinite(box.high) || box.high.z > kFar)
    return;
  const Vec3<double> p = GetCoord();
  const bool isAround = !box.IsEmpty() && box.low.x <= p.x && p.x <= box.high.x &&
                        box.low.y <= p.y && p.y <= box.high.y;
  if (!isAround && !IsNear(box.low, p) && !IsNear(box.high, p))
    return;
  bboxExtension_ = box;
  BoundChanged();
}

void Model::refresh() {
  if (link_)
    link_->refresh();
}

void Model::SetFetchState(net::FetchState state) {
  if (state == fetchState_)
    return;
  fetchState_ = state;
  NotifyFieldChanged(Fields().fetchState);
}

void Model::InvalidateTexturePaths() {
  const DeletionDeferrer deferrer;
  Fields().resourceMap.Replace(*this, nullptr);
}

void Model::GetReferencedTexturePaths(ResourceDictionary& dictionary) const {
  if (resourceMap_)
    resourceMap_->GetCopy(dictionary, GetId());
}

void Model::SetReferencedTexturePaths(const ResourceDictionary& dictionary) {
  const DeletionDeferrer deferrer;
  InitResourceMap();
  if (const RefPtr<ResourceMap> map = resourceMap_)
    map->SetAll(dictionary, QString());
}

void Model::InitResourceMap() {
  static std::atomic<int> counter{0};
  QString id = GetId();
  if (id.isEmpty()) {
    id = QStringLiteral("model_%1").arg(++counter);
    SetBit(kBitMadeUpId, true);
  }
  SetKmlId(GetUniqueRuntimeId(KmlId(id, GetUrl())));
  if (!resourceMap_) {
    const RefPtr<ResourceMap> map(new ResourceMap(KmlId(QString(), GetUrl()), QString()));
    Fields().resourceMap.SetTypedObject(*this, map);
  }
}

void Model::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void Model::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

void Model::SetAltitudes(const double* values, int count) {
  if (values && count > 0)
    SetAltitude(values[0]);
}

void Model::GetAltitudes(mmvector<double>& out) const { out.push_back(GetCoord().z); }

void Model::SetAltitude(double altitude) {
  if (!location_)
    return;
  const Vec3<double> lla = location_->GetLLA();
  const double metres = convert::NormToLLA({0.0, 0.0, altitude}).z;
  if (metres == lla.z && !location_->HasKeptValues())
    return;
  const DeletionDeferrer deferrer;
  location_->SetLLA({lla.x, lla.y, metres});
  NotifyCoordsChanged();
}

const Vec3<double>* Model::GetCoords(int& count) const {
  coordCopy_ = GetCoord();
  count = 1;
  return &coordCopy_;
}

void Model::SetCoords(const Vec3<double>* coords, int) {
  if (coords)
    SetCoord(*coords);
}

int Model::GetCoordCount() const { return location_ ? 1 : 0; }

void Model::NotifyCoordsChanged() { NotifyFieldChanged(Fields().location); }

/// Not worth a cache: there's one position.
GeoBoundingBox<double> Model::GetBBox() const {
  GeoBoundingBox<double> box;
  box.add(bboxExtension_);
  const Vec3<double> p = GetCoord();
  if (IsFinite(p))
    box.add(p);
  return box;
}

void Model::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  const ModelSchema& fields = Fields();
  if (&field == &fields.link || &field == &fields.scale || &field == &fields.orientation)
    BoundChanged();
  else if (&field == &fields.fetchState)
    FetchObserver::Notify(this, link_.get(), fetchState_);
  Geometry::NotifyFieldChanged(field);
}

void Model::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.GetId() == GetId())
    SetBit(kBitMadeUpId, src.GetBit(kBitMadeUpId));
  Geometry::CopyNonFieldStuff(src);
}

void Model::WriteKml(WriteState& state) const {
  const bool needsFile = link_ && !link_->GetHref().isEmpty() && !resourceMap_;
  if (needsFile && state.mode() == WriteState::kWriteKmzFile) {
    const UrlType type = GGetUrlType(link_->GetAbsoluteUrl());
    if (type == kUrlLocal || type == kUrlRelative || type == kUrlFragment) {
      state.SetError(
          tr("Could not write \"%1\" because the model file \"%2\"\nhas not been loaded.\n\nTo "
             "load the model file, fly to the location of the model and\nmake sure that its "
             "placemark is visible (checked).",
             "Error message shown when a KMZ file would lack the textures of a model. VAL_1 is the "
             "KMZ file, VAL_2 the file of the model.")
              .arg(state.fileName(), QFileInfo(link_->GetHref()).fileName()) +
          QLatin1Char('\n'));
      return;
    }
  }
  Geometry::WriteKml(state);
}

} // namespace vorrel::kestan
