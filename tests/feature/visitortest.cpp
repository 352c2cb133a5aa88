#include "kestan/feature/channel.h"
#include "kestan/feature/document.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/globe.h"
#include "kestan/feature/placemark.h"
#include "kestan/feature/planet.h"
#include "kestan/feature/window.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using VisitorTest = KmlTest;

namespace {

/// Notes the classes that it's asked to climb from.
class ClimbLog final : public FeatureVisitor {
public:
  using FeatureVisitor::visit;
  void visit(AbstractFolder& folder) override {
    text_ += "F";
    FeatureVisitor::visit(folder);
  }
  void visit(AbstractFeature& feature) override {
    text_ += "*";
    FeatureVisitor::visit(feature);
  }
  void visit(Placemark& placemark) override {
    text_ += "P";
    FeatureVisitor::visit(placemark);
  }
  bool ShouldVisitBaseClass(AbstractFeature&) override { return climbs_; }

  bool climbs_ = true;
  QString text_;
};

} // namespace

TEST_F(VisitorTest, VisitsClimbToTheBasesUnlessToldNotTo) {
  const KmlId none;
  struct Case {
    RefPtr<AbstractFeature> feature;
    const char* climbing;
    const char* exact;
  };
  const Case cases[] = {
      {new Placemark(none, ""), "P*", "P"}, {new Folder(none, ""), "F*", ""},
      {new Document(none, ""), "F*", ""},   {new Channel(none, ""), "F*", ""},
      {new Globe(none, ""), "F*", "F"},     {new Planet(none, ""), "*", "*"},
      {new Window(none, ""), "*", "*"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.feature->getType().toStdString());
    ClimbLog log;
    c.feature->accept(log);
    EXPECT_EQ(c.climbing, std::exchange(log.text_, QString()));
    log.climbs_ = false;
    c.feature->accept(log);
    EXPECT_EQ(c.exact, log.text_);
  }
}

} // namespace vorrel::kestan
