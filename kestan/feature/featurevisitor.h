#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class AbstractFeature;
class AbstractFolder;
class AbstractOverlay;
class Channel;
class Database;
class Document;
class Folder;
class GroundOverlay;
class NetworkLink;
class PhotoOverlay;
class Placemark;
class ScreenOverlay;
class Tour;

/// Does something that depends on the class of a feature: `feature.accept(visitor)` calls the
/// `visit` of that class.
///
/// A `visit` that isn't replaced climbs to that of the base class, as long as
/// `ShouldVisitBaseClass` allows it. No visit goes down to the children of a folder.
class KESTAN_EXPORT FeatureVisitor {
public:
  virtual ~FeatureVisitor();

  virtual void visit(AbstractFeature& feature);
  virtual void visit(AbstractFolder& folder);
  virtual void visit(Channel& channel);
  virtual void visit(Database& database);
  virtual void visit(Folder& folder);
  virtual void visit(Document& document);
  virtual void visit(NetworkLink& link);
  virtual void visit(Placemark& placemark);
  virtual void visit(AbstractOverlay& overlay);
  virtual void visit(ScreenOverlay& overlay);
  virtual void visit(GroundOverlay& overlay);
  virtual void visit(PhotoOverlay& overlay);
  virtual void visit(Tour& tour);
  /// Asked before a visit climbs.
  virtual bool ShouldVisitBaseClass(AbstractFeature& feature);
};

} // namespace vorrel::kestan
