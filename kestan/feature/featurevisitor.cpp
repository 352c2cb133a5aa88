#include "kestan/feature/featurevisitor.h"

#include "kestan/feature/channel.h"
#include "kestan/feature/database.h"
#include "kestan/feature/document.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/link/networklink.h" // the classes that a visit leads to
#include "kestan/overlay/groundoverlay.h"
#include "kestan/overlay/photooverlay.h"
#include "kestan/overlay/screenoverlay.h"
#include "kestan/tour/tour.h"

namespace vorrel::kestan {

namespace {

template <class Base> void Climb(FeatureVisitor& visitor, Base& feature) {
  if (visitor.ShouldVisitBaseClass(feature))
    visitor.visit(feature);
}

} // namespace

FeatureVisitor::~FeatureVisitor() = default;

void FeatureVisitor::visit(AbstractFeature& feature) { ShouldVisitBaseClass(feature); }

void FeatureVisitor::visit(AbstractFolder& folder) { Climb<AbstractFeature>(*this, folder); }

void FeatureVisitor::visit(Channel& channel) { Climb<AbstractFolder>(*this, channel); }

void FeatureVisitor::visit(Database& database) { Climb<AbstractFolder>(*this, database); }

void FeatureVisitor::visit(Folder& folder) { Climb<AbstractFolder>(*this, folder); }

void FeatureVisitor::visit(Document& document) { Climb<AbstractFolder>(*this, document); }

void FeatureVisitor::visit(NetworkLink& link) { Climb<AbstractFolder>(*this, link); }

void FeatureVisitor::visit(Placemark& placemark) { Climb<AbstractFeature>(*this, placemark); }

void FeatureVisitor::visit(AbstractOverlay& overlay) { Climb<AbstractFeature>(*this, overlay); }

void FeatureVisitor::visit(ScreenOverlay& overlay) { Climb<AbstractOverlay>(*this, overlay); }

void FeatureVisitor::visit(GroundOverlay& overlay) { Climb<AbstractOverlay>(*this, overlay); }

void FeatureVisitor::visit(PhotoOverlay& overlay) { Climb<AbstractOverlay>(*this, overlay); }

void FeatureVisitor::visit(Tour& tour) { Climb<AbstractFeature>(*this, tour); }

bool FeatureVisitor::ShouldVisitBaseClass(AbstractFeature&) { return true; }

} // namespace vorrel::kestan
