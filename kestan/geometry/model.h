#pragma once

#include "kestan/geometry/geometry.h"
#include "kestan/host/net.h"

namespace vorrel {
class ResourceDictionary;
}

namespace vorrel::kestan {

class Link;
class Location;
class ModelSchema;
class Orientation;
class ResourceMap;
class Scale;

/// A shape from a file of a 3D model: where it stands, how it's turned and stretched, and where
/// the files are that the model's file names.
///
/// A new one makes its parts itself, all but the map of files. In a document's model they are
/// written once they say something.
class KESTAN_EXPORT Model final : public Geometry {
public:
  using ClassSchema = ModelSchema;
  static const Schema& GetClassSchema();

  Model(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  Model(const Vec3<double>& coord, AbstractFeature* feature, const KmlId& id,
        const QString& baseUrl);
  ~Model() override;

  // The parts; null once they are taken out.
  Location* GetLocation() const { return location_.get(); }
  void SetLocation(const RefPtr<Location>& location);
  Orientation* GetOrientation() const { return orientation_.get(); }
  void SetOrientation(const RefPtr<Orientation>& orientation);
  Scale* GetScale() const { return scale_.get(); }
  void SetScale(const RefPtr<Scale>& scale);
  Link* GetModelDataLink() const { return link_.get(); }
  void SetModelDataLink(const RefPtr<Link>& link);
  /// Null while nobody knows which files the model's file names.
  ResourceMap* GetResourceMap() const { return resourceMap_.get(); }

  // What the parts say. Setters of a part that isn't there do nothing, nor do those of the present
  // value.
  Vec3<double> GetCoord() const;
  void SetCoord(const Vec3<double>& coord);
  /// Degrees about the axes: tilt, roll and heading.
  Vec3<double> GetOrientationVec() const;
  void SetOrientation(const Vec3<double>& angles);
  Vec3<double> GetScaleVec() const;
  void SetScale(const Vec3<double>& factors);

  /// The room that the client says the model takes, in normalised coordinates; empty at first.
  const BoundingBox<double>& GetBBoxExtension() const { return bboxExtension_; }
  /// Passes over a box that has nothing to do with where the model is, or that ends nowhere.
  void SetBBoxExtension(const BoundingBox<double>& box);

  /// Has the model's file fetched again.
  void refresh();
  net::FetchState GetFetchState() const { return fetchState_; }
  void SetFetchState(net::FetchState state);

  /// Drops the map of files, without a notice.
  void InvalidateTexturePaths();
  /// The map of files with each name for the model's id; without a map nothing changes.
  void GetReferencedTexturePaths(ResourceDictionary& dictionary) const;
  /// Makes the map say what the dictionary says. The model is known by a run-time URL from then on.
  void SetReferencedTexturePaths(const ResourceDictionary& dictionary);

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override;
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  void SetCoords(const Vec3<double>* coords, int count) override;
  int GetCoordCount() const override;
  void NotifyCoordsChanged() override;
  GeoBoundingBox<double> GetBBox() const override;
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  /// Fails in an archive while it isn't known which files the model needs.
  void WriteKml(WriteState& state) const override;

private:
  friend class ModelSchema;
  template <class T> friend class ModelPartField;

  void InitChildElements();
  void InitResourceMap();
  /// True for a part that a document's model has made for itself, and that says nothing.
  static bool IsMadeUp(const SchemaObject& model, const SchemaObject* part);

  RefPtr<Location> location_;
  RefPtr<Orientation> orientation_;
  RefPtr<Scale> scale_;
  RefPtr<Link> link_;
  RefPtr<ResourceMap> resourceMap_;
  mutable Vec3<double> coordCopy_; ///< What `GetCoords` points to.
  BoundingBox<double> bboxExtension_;
  net::FetchState fetchState_ = net::kFetchNone;
};

} // namespace vorrel::kestan
