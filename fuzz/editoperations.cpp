#include "fuzz/editoperations.h"

#include "fuzz/support.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/feature/channel.h"
#include "kestan/feature/document.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/dioramaobject.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/point.h"
#include "kestan/geometry/polygon.h"
#include "kestan/host/system.h"
#include "kestan/spacetime/abstractxform.h"
#include "kestan/spacetime/featureview.h"
#include "kestan/spacetime/region.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeinstant.h"
#include "kestan/spacetime/timeperiod.h"
#include "kestan/spacetime/timeprimitive.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstackstyle.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/itemicon.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "kestan/tour/animatedupdate.h"
#include "kestan/tour/flyto.h"
#include "kestan/tour/playlist.h"
#include "kestan/tour/tour.h"
#include "kestan/update/update.h"

#include <cmath>
#include <iterator>

using namespace vorrel;
using namespace vorrel::kestan;

namespace fuzz {

namespace {

/// What an operation gets: objects that are there, or null, and numbers.
struct Choice {
  const PickNumber& number;
  const PickObject& object;

  template <class T> T* get() const { return static_cast<T*>(object(T::GetClassSchema())); }
  bool flag() const { return number(2) != 0; }
  int index() const { return static_cast<int>(number(6)) - 1; }
  double angle() const {
    static const double angles[] = {0.0, 0.5, -0.75, 1.9, 1e9, 1e308, -1e308, std::nan("")};
    return angles[number(std::size(angles))];
  }
  QString url() const {
    static const char* const urls[] = {"",           "#a",        "#b",
                                       "edit.kml#c", "far.kml#d", "root://styles#hl"};
    return QLatin1String(urls[number(std::size(urls))]);
  }
};

using Operation = void (*)(const Choice&);

/// Runs `op(object, other)` where there's an object of each class.
template <class T, class U, class Op> void With(const Choice& c, Op op) {
  T* const object = c.get<T>();
  U* const other = c.get<U>();
  if (object && other)
    op(*object, *other);
}
template <class T, class Op> void With(const Choice& c, Op op) {
  if (T* const object = c.get<T>())
    op(*object);
}

using Feature = AbstractFeature;
using Parent = AbstractFolder;
using Pair = StyleMap::Pair;

constexpr Vec3<double> kPosition{0.1, 0.2, 0.3};
constexpr Vec3<double> kPositions[] = {{0.1, 0.2, 0.3}, {0.2, 0.1, 0.0}, {0.3, 0.3, 0.1}};

const Operation kOperations[] = {
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetVisibility(c.flag()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetHiddenByLod(c.flag()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetForceVisible(c.flag()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.EnsureVisible(); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetSnippetIfExists(c.url()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetStyleUrl(c.url()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetStyleMode(c.index()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.InlineStyle(); }); },
    [](const Choice& c) {
      With<Feature>(c, [&](auto& f) { f.SetInlineStyleSelector(c.get<StyleSelector>()); });
    },
    [](const Choice& c) {
      With<Feature>(c, [&](auto& f) { f.SetReferencedStyleSelector(c.get<StyleSelector>()); });
    },
    [](const Choice& c) {
      With<Feature>(c, [&](auto& f) { f.SetTimePrimitive(c.get<TimePrimitive>()); });
    },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.SetParent(c.get<Parent>()); }); },
    [](const Choice& c) { With<Feature>(c, [&](auto& f) { f.getRenderStyleSelector(); }); },
    [](const Choice& c) { With<Parent, Feature>(c, [&](auto& p, auto& f) { p.AddChild(f); }); },
    [](const Choice& c) { With<Parent, Feature>(c, [&](auto& p, auto& f) { p.RemChild(f); }); },
    [](const Choice& c) {
      With<Parent, Feature>(c, [&](auto& p, auto& f) { p.InsertChild(c.index(), f); });
    },
    [](const Choice& c) {
      With<Parent, Parent>(c, [](auto& a, auto& b) { AbstractFolder::MoveAllChildren(&a, &b); });
    },
    [](const Choice& c) { With<Parent>(c, [](auto& p) { p.SortChildrenByName(); }); },
    [](const Choice& c) { With<Parent>(c, [&](auto& p) { p.SetSyncState(c.index()); }); },
    [](const Choice& c) { With<Parent>(c, [&](auto& p) { p.SetIcon(c.get<Icon>()); }); },
    [](const Choice& c) { Time::SetTimeFolder(c.get<Parent>()); },
    [](const Choice& c) {
      With<Channel, Feature>(c, [](auto& p, auto& f) { p.InternalRemoveChild(f); });
    },
    [](const Choice& c) {
      With<Document, StyleSelector>(c, [](auto& d, auto& s) { d.AddStyleSelector(s); });
    },
    [](const Choice& c) {
      With<Document, StyleSelector>(c,
                                    [&](auto& d, auto& s) { d.InsertStyleSelector(c.index(), s); });
    },
    [](const Choice& c) {
      With<Document, StyleSelector>(c, [](auto& d, auto& s) { d.RemStyleSelector(s); });
    },
    [](const Choice& c) { With<Placemark>(c, [&](auto& p) { p.SetGeometry(c.get<Geometry>()); }); },
    [](const Choice& c) {
      With<Geometry>(c, [&](auto& g) { g.SetAltitudeMode(c.flag() ? kAbsolute : kClampToGround); });
    },
    [](const Choice& c) { With<Geometry>(c, [&](auto& g) { g.SetTessellate(c.flag()); }); },
    [](const Choice& c) { With<Geometry>(c, [&](auto& g) { g.SetExtrude(c.flag()); }); },
    [](const Choice& c) { With<Geometry>(c, [&](auto& g) { g.SetAltitude(c.index()); }); },
    [](const Choice& c) {
      With<Geometry>(c, [&](auto& g) {
        const double altitudes[] = {1.0, 2.0, 3.0};
        g.SetAltitudes(c.flag() ? altitudes : nullptr, c.index());
      });
    },
    [](const Choice& c) {
      With<Geometry>(c, [&](auto& g) {
        g.SetCoords(c.flag() ? kPositions : nullptr, static_cast<int>(c.number(4)));
      });
    },
    [](const Choice& c) { With<Geometry>(c, [](auto& g) { g.NotifyCoordsChanged(); }); },
    [](const Choice& c) { With<Geometry>(c, [](auto& g) { g.BoundChanged(); }); },
    [](const Choice& c) {
      With<LineString>(c, [&](auto& l) { l.AddCoord(c.index(), kPosition); });
    },
    [](const Choice& c) { With<LineString>(c, [&](auto& l) { l.DelCoord(c.index()); }); },
    [](const Choice& c) { With<LineString>(c, [&](auto& l) { l.SetCoordCount(c.index()); }); },
    [](const Choice& c) { With<LineString>(c, [&](auto& l) { l.SetSelectedCoord(c.index()); }); },
    [](const Choice& c) { With<LineString>(c, [](auto& l) { l.ReverseCoordOrder(); }); },
    [](const Choice& c) { With<Polygon>(c, [](auto& p) { p.MakeCounterClockwise(); }); },
    [](const Choice& c) {
      With<Polygon>(c, [&](auto& p) { p.SetOuterBoundaryNoNotification(c.get<LinearRing>()); });
    },
    [](const Choice& c) {
      With<Polygon, LinearRing>(c, [&](auto& p, auto& r) { p.InsertInnerBoundary(c.index(), &r); });
    },
    // A client holds what it makes: the feature may refuse the shape, or lose it at once.
    [](const Choice& c) {
      const RefPtr<Point> point(new Point(kPosition, c.get<Feature>(), KmlId(), QString()));
    },
    [](const Choice& c) {
      const RefPtr<MultiGeometry> shape(new MultiGeometry(c.get<Feature>(), KmlId(), QString()));
    },
    [](const Choice& c) {
      const RefPtr<Polygon> area(new Polygon(
          c.get<Feature>(), {std::begin(kPositions), std::end(kPositions)}, nullptr, KmlId(), {}));
    },
    [](const Choice& c) {
      With<TimePeriod>(c, [&](auto& t) {
        TimeInstant* const instant = c.get<TimeInstant>();
        if (c.flag())
          t.SetBeginInstant(instant);
        else
          t.SetEndInstant(instant);
      });
    },
    [](const Choice& c) {
      With<Style>(c, [](auto& s) {
        const DeletionDeferrer deferrer; // making it is told, too, which may end it
        IconStyle* const icon = s.GetIconStyle();
        icon->SetScale(icon->GetScale() + 1);
      });
    },
    [](const Choice& c) { With<Style>(c, [&](auto& s) { s._setIconStyle(c.get<IconStyle>()); }); },
    [](const Choice& c) {
      With<Style>(c, [](auto& s) { s.UnspecifyRedundantFields(*Style::GetDefaultStyle()); });
    },
    [](const Choice& c) {
      With<Style, Icon>(c, [](auto& s, auto& i) { s.CloneHighlightIcon(i); });
    },
    [](const Choice& c) { With<IconStyle>(c, [&](auto& s) { s.SetIcon(c.get<Icon>()); }); },
    [](const Choice& c) {
      With<IconStackStyle, IconStyle>(c, [](auto& s, auto& i) { s.AddIconStyle(i); });
    },
    [](const Choice& c) {
      With<ListStyle, ItemIcon>(c, [](auto& s, auto& i) { s.AddItemIcon(i); });
    },
    [](const Choice& c) { With<ListStyle>(c, [](auto& s) { s.ClearItemIcons(); }); },
    [](const Choice& c) {
      With<StyleMap, Style>(
          c, [&](auto& m, auto& s) { m.setStyle(c.flag() ? kStyleNormal : kStyleHighlight, s); });
    },
    [](const Choice& c) {
      With<StyleSelector>(c, [&](auto& s) { s.InternalFlatten(c.get<StyleSelector>(), false); });
    },
    [](const Choice& c) { With<Pair>(c, [&](auto& p) { p.SetStyleUrl(c.url()); }); },
    [](const Choice& c) {
      With<Pair>(c, [&](auto& p) { p.SetStyleSelector(c.get<StyleSelector>()); });
    },
    [](const Choice& c) { With<FlyTo>(c, [&](auto& f) { f.setView(c.get<AbstractView>()); }); },
    [](const Choice& c) {
      With<AbstractView>(c, [&](auto& v) {
        v.ContainExtents(60.0F, 40.0F, c.angle(), c.angle(), c.angle(), c.angle(), c.angle(), 0.0);
        v.AlmostEqual(c.get<AbstractView>());
      });
    },
    [](const Choice& c) {
      With<AbstractView>(c, [&](auto& v) { v.SetViewState(c.get<ViewState>()); });
    },
    [](const Choice& c) { With<FeatureView>(c, [&](auto& v) { v.SetFeature(c.get<Feature>()); }); },
    [](const Choice& c) {
      With<ViewState, RenderState>(c, [&](auto& v, auto& s) {
        if (!v.AddRenderState(&s))
          v.RemRenderState(c.index());
      });
    },
    [](const Choice& c) {
      With<Playlist, TourPrimitive>(c, [&](auto& l, auto& p) {
        if (c.flag())
          l.PrependPrimitive(&p);
        else if (!l.AddPrimitive(&p))
          l.RemPrimitive(&p);
      });
    },
    [](const Choice& c) {
      With<AnimatedUpdate>(c, [&](auto& a) {
        const DeletionDeferrer deferrer;
        a.SetStart();
        if (Update* const update = a.GetUpdate())
          update->ApplyEdits(static_cast<float>(c.index()) / 4.0F);
      });
    },
    [](const Choice& c) { With<Tour>(c, [](auto& t) { t.GetDuration(); }); },
    [](const Choice& c) {
      With<AbstractXform>(c, [&](auto& x) {
        x.SetLatLonExtent(c.angle(), c.angle(), c.angle(), c.angle(),
                          static_cast<AbstractXform::Edge>(c.number(10)));
      });
    },
    [](const Choice& c) {
      With<AbstractXform>(c, [&](auto& x) { x.SetCorner({c.angle(), c.angle(), 0.0}, c.index()); });
    },
    [](const Choice& c) { With<Region>(c, [&](auto& r) { r.SetLod(c.get<Lod>()); }); },
    [](const Choice& c) { With<Region>(c, [](auto& r) { r.GetLatLonAltBox(); }); },
    [](const Choice& c) { With<Lod>(c, [&](auto& l) { l.SetHrefToReplace(c.url()); }); },
    [](const Choice& c) {
      With<Region>(c, [&](auto& r) {
        ++System::s_cur_frame;
        r.UpdateExtents();
        r.Update(c.flag() ? BoundingVolume::kInside : BoundingVolume::kOutside, 1.0F);
      });
    },
};

} // namespace

void RunClassOperation(const PickNumber& number, const PickObject& object) {
  kOperations[number(std::size(kOperations))](Choice{number, object});
}

void CheckState(const SchemaObject& object) {
  if (object.isOfType(AbstractFeature::GetClassSchema())) {
    const auto& feature = static_cast<const AbstractFeature&>(object);
    feature.isVisible();
    for (const SchemaObject* inherited :
         {static_cast<const SchemaObject*>(feature.GetInheritedTime()),
          static_cast<const SchemaObject*>(feature.GetInheritedRegion()),
          static_cast<const SchemaObject*>(feature.GetReferencedStyleSelector())}) {
      if (inherited && inherited->GetBit(kBitDeleting))
        Fail(QStringLiteral("a feature keeps something dead"));
    }
  }
  if (object.isOfType(Geometry::GetClassSchema())) {
    const auto& geometry = static_cast<const Geometry&>(object);
    if (geometry.GetFeature() && geometry.GetFeature()->GetBit(kBitDeleting))
      Fail(QStringLiteral("a shape of a dead feature"));
    geometry.GetBBox();
    geometry.GetInheritedName();
  }
}

} // namespace fuzz
