#include "bench/scenes.h"

#include "kestan/core/objectobserver.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/system.h"
#include "kestan/link/link.h"
#include "kestan/link/viewparams.h"
#include "kestan/spacetime/region.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/style.h"

using namespace vorrel::kestan;

namespace bench {

namespace {

constexpr int kLevels = 10;

std::string InDocument(const std::string& content) {
  return "<Document>" + content + "</Document>";
}

std::string MakeStyle(const std::string& id, int width) {
  return "<Style" + (id.empty() ? "" : " id='" + id + "'") + "><LineStyle><width>" +
         std::to_string(width) + "</width></LineStyle></Style>";
}

std::string MakePlacemark(const std::string& content) {
  return "<Placemark><name>feature</name>" + content + "</Placemark>";
}

std::string Reference(const std::string& id) { return "<styleUrl>#" + id + "</styleUrl>"; }

std::string MakeStyled(Look look, std::size_t count) {
  std::string text = MakeStyle("s", 1) +
                     "<Style id='t'><PolyStyle><fill>0</fill></PolyStyle></Style>"
                     "<StyleMap id='m'><Pair><key>normal</key>" +
                     Reference("s") + "</Pair><Pair><key>highlight</key>" + Reference("t") +
                     "</Pair></StyleMap>";
  for (std::size_t i = 0; i < count; ++i) {
    const auto width = static_cast<int>(2 + (look == Look::kOwn ? i % 100 : 0));
    const bool isMerged = look == Look::kMerged || look == Look::kOwn;
    text += MakePlacemark(Reference(look == Look::kMap ? "m"
                                    : isMerged         ? "t"
                                                       : "s") +
                          (isMerged ? MakeStyle("", width) : ""));
  }
  return InDocument(text);
}

/// A region that stands in for a feature of its own, which follows.
std::string MakeReplacing(std::size_t number) {
  const std::string id = "r" + std::to_string(number);
  return "<Region><Lod xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><gx:hrefToReplace>#" + id +
         "</gx:hrefToReplace></Lod></Region></Placemark><Placemark id='" + id + "'>";
}

/// `makeContent` gets the number of the feature.
template <class MakeContent>
std::string MakeNested(int levels, std::size_t count, MakeContent makeContent) {
  std::string text;
  for (int i = 0; i < levels; ++i) {
    text += "<Folder>";
  }
  for (std::size_t i = 0; i < count; ++i) {
    text += MakePlacemark(makeContent(i));
  }
  for (int i = 0; i < levels; ++i) {
    text += "</Folder>";
  }
  return InDocument(text);
}

std::vector<AbstractFeature*> FindFeatures(const Subject::Tree& tree) {
  vorrel::mmvector<SchemaObject*> objects;
  tree->FindBySchema(Placemark::GetClassSchema(), objects);
  std::vector<AbstractFeature*> features;
  for (SchemaObject* object : objects) {
    features.push_back(static_cast<AbstractFeature*>(object));
  }
  return features;
}

} // namespace

const char* Name(Sight sight) {
  const char* const names[] = {"still", "moving", "moving and replacing"};
  return names[static_cast<int>(sight)];
}

RegionFrames::RegionFrames(const Subject& subject, Sight sight, std::size_t count)
    : tree_(subject.Read(MakeNested(kLevels, count,
                                    [sight](std::size_t number) {
                                      return sight == Sight::kReplacing ? MakeReplacing(number)
                                                                        : std::string("<Region/>");
                                    }))),
      sight_(sight) {
  for (AbstractFeature* feature : FindFeatures(tree_)) {
    if (Region* const region = feature->GetRegion()) {
      regions_.push_back(region);
    }
  }
}

void RegionFrames::Draw() {
  ++vorrel::System::s_cur_frame;
  inSight_ = sight_ == Sight::kStill || !inSight_;
  const auto result = inSight_ ? vorrel::BoundingVolume::kInside : vorrel::BoundingVolume::kOutside;
  for (Region* region : regions_) {
    region->Update(result, 1.0F);
  }
}

const char* Name(Look look) {
  const char* const names[] = {"one shared style", "inline over shared, alike",
                               "inline over shared, different", "style map"};
  return names[static_cast<int>(look)];
}

StyledFeatures::StyledFeatures(const Subject& subject, Look look, std::size_t count)
    : tree_(subject.Read(MakeStyled(look, count))), features_(FindFeatures(tree_)) {
  for (const AbstractFeature* feature : features_) {
    plain_.push_back(MakePlainFeature(feature->getRenderStyle(0)));
  }
}

std::uintptr_t StyledFeatures::Ask(int mode) const {
  std::uintptr_t sum = 0;
  for (const AbstractFeature* feature : features_) {
    sum += reinterpret_cast<std::uintptr_t>(feature->getRenderStyle(mode));
  }
  return sum;
}

std::uintptr_t StyledFeatures::AskPlain(int mode) const {
  std::uintptr_t sum = 0;
  for (const std::unique_ptr<PlainFeature>& feature : plain_) {
    sum += reinterpret_cast<std::uintptr_t>(feature->GetStyle(mode));
  }
  return sum;
}

void StyledFeatures::ChangeSharedStyle() {
  for (const char* id : {"s", "t"}) {
    vorrel::kestan::Style::find(tree_->GetUrl(), QLatin1String(id))
        ->GetLineStyle()
        ->SetWidth(++width_);
  }
}

const char* Name(Audience audience) {
  const char* const names[] = {"no observer", "one observer", "10 levels of owners",
                               "10 levels, observer on top"};
  return names[static_cast<int>(audience)];
}

class WatchedFeatures::Listener final : public ObjectObserver {
public:
  Listener(SchemaObject& object, std::size_t& notices)
      : ObjectObserver(object), notices_(notices) {}

  void OnFieldChanged(const FieldChangedEvent&) override { ++notices_; }
  void OnSubFieldChanged(const SubFieldChangedEvent&) override { ++notices_; }
  void OnPreDelete(const PreDeleteEvent&) override { SetObserved(nullptr); }

private:
  std::size_t& notices_;
};

WatchedFeatures::WatchedFeatures(const Subject& subject, Audience audience, std::size_t count)
    : tree_(subject.Read(
          MakeNested(audience == Audience::kOwners || audience == Audience::kObservedOwners
                         ? kLevels - 1 // the document is one more
                         : 0,
                     count, [](std::size_t) { return std::string(); }))),
      features_(FindFeatures(tree_)) {
  if (audience == Audience::kObserver) {
    for (AbstractFeature* feature : features_) {
      listeners_.push_back(std::make_unique<Listener>(*feature, notices_));
    }
  }
  if (audience == Audience::kOwners || audience == Audience::kObservedOwners) {
    tree_->SetInheritedShouldNotifySubFieldChanged(true);
  }
  if (audience == Audience::kObservedOwners) {
    listeners_.push_back(std::make_unique<Listener>(*tree_, notices_));
  }
}

WatchedFeatures::~WatchedFeatures() = default;

void WatchedFeatures::Change() {
  open_ = !open_;
  for (AbstractFeature* feature : features_) {
    feature->SetIsOpen(open_);
  }
}

ViewedLinks::ViewedLinks(const Subject& subject, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += "<NetworkLink><Link><href>http://example.com/" + std::to_string(i) +
            "</href><viewFormat>BBOX=[west],[south],[east],[north];CAMERA="
            "[lookatLon],[lookatLat],[lookatRange]</viewFormat><httpQuery>v=[clientVersion]"
            "</httpQuery></Link></NetworkLink>";
  }
  tree_ = subject.Read(InDocument(text));
  vorrel::mmvector<SchemaObject*> links;
  tree_->FindBySchema(Link::GetClassSchema(), links);
  for (SchemaObject* const link : links) {
    links_.push_back(static_cast<AbstractLink*>(link));
  }
}

std::size_t ViewedLinks::Ask() {
  ViewParams view;
  view.west = step_ = step_ < 0.5 ? step_ + 0.001 : 0.0;
  view.east = view.west + 0.1;
  std::size_t length = 0;
  for (AbstractLink* const link : links_) {
    link->setViewParams(view);
    length += static_cast<std::size_t>(link->GetAbsoluteUrl().size());
  }
  return length;
}

std::string MakeReferences(References references, std::size_t count) {
  const bool isToOne =
      references == References::kBackwardToOne || references == References::kForwardToOne;
  const bool isForward =
      references == References::kForward || references == References::kForwardToOne;
  std::string features;
  std::string styles;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string id = isToOne ? "s" : "s" + std::to_string(i);
    features += MakePlacemark(Reference(id));
    if (!isToOne || i == 0) {
      styles += MakeStyle(id, 2);
    }
  }
  return InDocument(isForward ? features + styles : styles + features);
}

} // namespace bench
