#include "kestan/tour/tour.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/kmz.h"
#include "kestan/spacetime/lookat.h"
#include "kestan/tour/animatedupdate.h"
#include "kestan/tour/flyto.h"
#include "kestan/tour/playlist.h"
#include "kestan/tour/playlistschema.h"
#include "kestan/tour/soundcue.h"
#include "kestan/tour/tourcontrol.h"
#include "kestan/tour/tourprimitivecast.h"
#include "kestan/tour/wait.h"
#include "kestan/update/update.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <QFile>
#include <QTemporaryDir>

#include <cmath>

namespace vorrel::kestan {

class TourTest : public KmlTest {
protected:
  RefPtr<Tour> ReadTour(const QString& content) {
    return Read<Tour>("<gx:Tour xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">" + content +
                      "</gx:Tour>");
  }
  QString WriteBare(const SchemaObject& object) {
    return Element(Write(object), object.GetPrefixedName()).remove('\n').remove('\t');
  }
  /// The object with this id in the document.
  static AbstractFeature* Find(const char* id) {
    return static_cast<AbstractFeature*>(SchemaObject::find(GetDocumentUrl(), id));
  }
};

namespace {

/// Names the classes that it comes by.
class Names final : public TourPrimitiveVisitor {
public:
  void Visit(TourPrimitive&) override { text += "?"; }
  void Visit(FlyTo&) override { text += "F"; }
  void Visit(Wait&) override { text += "W"; }
  void Visit(TourControl&) override { text += "C"; }
  void Visit(SoundCue&) override { text += "S"; }
  void Visit(AnimatedUpdate&) override { text += "U"; }
  using TourPrimitiveVisitor::ConstVisit;
  void ConstVisit(const FlyTo&) override { text += "f"; }
  void ConstVisit(const Wait&) override { text += "w"; }
  void ConstVisit(const TourControl&) override { text += "c"; }
  void ConstVisit(const SoundCue&) override { text += "s"; }
  void ConstVisit(const AnimatedUpdate&) override { text += "u"; }

  QString text;
};

constexpr char kAll[] =
    "<gx:Playlist><gx:FlyTo><gx:duration>2.5</gx:duration><gx:flyToMode>smooth</gx:flyToMode>"
    "<LookAt><longitude>1</longitude></LookAt></gx:FlyTo>"
    "<gx:AnimatedUpdate><gx:duration>4</gx:duration><Update><targetHref></targetHref>"
    "<Change><Placemark targetId=\"p\"><name>x</name></Placemark></Change></Update>"
    "<gx:delayedStart>3</gx:delayedStart></gx:AnimatedUpdate>"
    "<gx:Wait><gx:duration>1</gx:duration></gx:Wait>"
    "<gx:SoundCue><href>http://h/a.mp3</href><gx:delayedStart>-2</gx:delayedStart></gx:SoundCue>"
    "<gx:TourControl></gx:TourControl></gx:Playlist>";

} // namespace

TEST_F(TourTest, ToursComeBackWithWhatTheySaid) {
  const struct {
    const char* content;
    const char* written; // null when it's the content
    double duration;
  } cases[] = {
      {kAll, nullptr, 7.5},
      {"", nullptr, 0.0},
      {"<gx:Playlist></gx:Playlist>", nullptr, 0.0},
      {"<gx:tourMode>realtime</gx:tourMode>", nullptr, 0.0},
      {"<gx:tourMode>interactive</gx:tourMode>", "", 0.0},
      {"<gx:Playlist><gx:FlyTo><gx:flyToMode>bounce</gx:flyToMode></gx:FlyTo>"
       "<gx:TourControl><gx:playMode>pause</gx:playMode></gx:TourControl></gx:Playlist>",
       "<gx:Playlist><gx:FlyTo></gx:FlyTo><gx:TourControl></gx:TourControl></gx:Playlist>", 0.0},
      {"<gx:Playlist><gx:TourControl><gx:playMode>play</gx:playMode></gx:TourControl>"
       "</gx:Playlist>",
       nullptr, 0.0},
      {"<gx:Playlist><gx:Wait><gx:duration>-3</gx:duration></gx:Wait><gx:Wait>"
       "<gx:duration>2</gx:duration></gx:Wait></gx:Playlist>",
       "<gx:Playlist><gx:Wait></gx:Wait><gx:Wait><gx:duration>2</gx:duration></gx:Wait>"
       "</gx:Playlist>",
       2.0},
      {"<gx:Playlist><gx:Wait a=\"1\"><u></u></gx:Wait></gx:Playlist>", nullptr, 0.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.content);
    const auto tour = ReadTour(c.content);
    ASSERT_TRUE(tour && tour->GetPlaylist());
    EXPECT_EQ(c.duration, tour->GetDuration());
    const QString written = WriteBare(*tour);
    EXPECT_EQ(QStringLiteral("<gx:Tour>%1</gx:Tour>").arg(c.written ? c.written : c.content),
              written);
    EXPECT_EQ(written, WriteBare(*ReadObject(Write(*tour))));
    EXPECT_EQ(written, WriteBare(*tour->clone(true, nullptr)));
  }
  const RefPtr<Tour> made(new Tour(KmlId(), QString()));
  EXPECT_EQ("<gx:Tour><gx:Playlist></gx:Playlist></gx:Tour>", WriteBare(*made));
}

TEST_F(TourTest, AListIsEditedThroughItsField) {
  const auto tour = ReadTour("");
  Playlist& list = *tour->GetPlaylist();
  FieldLog log(list);
  const RefPtr<Wait> wait(new Wait(KmlId(), QString()));
  const RefPtr<FlyTo> fly(new FlyTo(KmlId(), QString()));
  EXPECT_TRUE(list.AddPrimitive(wait.get()));
  EXPECT_FALSE(list.AddPrimitive(wait.get()));
  EXPECT_TRUE(list.PrependPrimitive(fly.get()));
  EXPECT_FALSE(list.PrependPrimitive(nullptr));
  EXPECT_EQ("TourPrimitive TourPrimitive", log.take());
  EXPECT_EQ(fly.get(), list.GetPrimitives().front().get());
  EXPECT_EQ(&list, fly->GetOwner(0));
  EXPECT_EQ(nullptr, fly->GetParent()) << "that is the list";
  PlaylistSchema::GetSingleton().primitives.set(list, new Wait(KmlId(), QString()), 4);
  wait->SetDuration(3.0);
  EXPECT_EQ(3.0, tour->GetDuration()) << "entries may be missing";
  EXPECT_EQ("<gx:Tour><gx:Playlist><gx:FlyTo></gx:FlyTo><gx:Wait><gx:duration>3</gx:duration>"
            "</gx:Wait><gx:Wait></gx:Wait></gx:Playlist></gx:Tour>",
            WriteBare(*tour));
  EXPECT_TRUE(list.RemPrimitive(wait.get()));
  EXPECT_FALSE(list.RemPrimitive(wait.get()));
  EXPECT_EQ(nullptr, wait->GetOwner(0));

  FieldLog changes(*fly);
  fly->SetInterpMode(kFlyToBounce);
  fly->SetInterpMode(kFlyToSmooth);
  const RefPtr<LookAt> look(new LookAt(KmlId(), QString()));
  fly->setView(look.get());
  fly->setView(look.get());
  fly->SetDuration(-1.0);
  EXPECT_EQ("flyToMode AbstractView duration", changes.take());
  EXPECT_EQ(0.0, fly->GetDuration());
}

TEST_F(TourTest, PrimitivesAreToldApart) {
  const auto tour = ReadTour(kAll);
  Names names;
  QString casts;
  for (const RefPtr<TourPrimitive>& primitive : tour->GetPlaylist()->GetPrimitives()) {
    TourPrimitive* const any = primitive.get();
    any->Accept(names);
    static_cast<const TourPrimitive*>(any)->ConstAccept(names);
    using Cast = TourPrimitiveCast;
    for (const bool is :
         {Cast::CastToFlyTo(any) != nullptr, Cast::CastToAnimatedUpdate(any) != nullptr,
          Cast::CastToWait(any) != nullptr, Cast::CastToSoundCue(any) != nullptr,
          Cast::CastToTourControl(any) != nullptr})
      casts += is ? '1' : '0';
    casts += ' ';
  }
  EXPECT_EQ("FfUuWwSsCc", names.text);
  EXPECT_EQ("10000 01000 00100 00010 00001 ", casts);
  EXPECT_EQ(nullptr, TourPrimitiveCast::CastToWait(static_cast<const TourPrimitive*>(nullptr)));
}

TEST_F(TourTest, AnAnimatedUpdateGoesForwardAndBack) {
  const auto folder = Read<Folder>(
      "<Folder xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Placemark id=\"p\"><name>a</name>"
      "<Point><coordinates>10,20,0</coordinates></Point></Placemark><gx:Tour id=\"t\">"
      "<gx:Playlist><gx:AnimatedUpdate><Update><targetHref></targetHref><Change>"
      "<Placemark targetId=\"none\"/><Placemark targetId=\"p\"><name>b</name><Point><coordinates>"
      "20,40,0</coordinates></Point></Placemark></Change></Update></gx:AnimatedUpdate>"
      "</gx:Playlist></gx:Tour></Folder>");
  ASSERT_TRUE(folder);
  IntSetting& handling = KestanOptionsContext::kestanOptions.kmlErrorHandling;
  const int before = handling.Get();
  handling.Set(2); // a stop, if it weren't for the silence
  auto& tour = static_cast<Tour&>(*folder->GetChild(1));
  AnimatedUpdate& animated =
      *TourPrimitiveCast::CastToAnimatedUpdate(tour.GetPlaylist()->GetPrimitives()[0].get());
  const QString text = Write(*folder);
  animated.SetStart();
  EXPECT_EQ(2, handling.Get());
  handling.Set(before);
  Update& update = *animated.GetUpdate();
  EXPECT_EQ(2, update.GetEditCount());
  EXPECT_EQ(text, Write(*folder));
  update.ApplyEdits(0.5F);
  EXPECT_TRUE(Write(*folder).contains("15,30,0"));
  update.ApplyEdits(1.0F);
  EXPECT_EQ("b", Find("p")->GetName());
  update.ApplyEdits(0.0F);
  EXPECT_EQ(text, Write(*folder));

  animated.SetStart();
  EXPECT_EQ(4, update.GetEditCount()) << "each start makes edits of its own";
  folder->RemChild(*Find("p"));
  EXPECT_EQ(0, update.GetEditCount());
  update.ApplyEdits(1.0F);
  animated.SetStart();
  EXPECT_EQ(0, update.GetEditCount());
  AnimatedUpdate(KmlId(), QString()).SetStart();
}

TEST_F(TourTest, AnUpdateIsBuiltFromAFieldAndItsValue) {
  const auto folder = Read<Folder>("<Folder><Placemark><name>a</name></Placemark></Folder>");
  AbstractFeature* const placemark = folder->GetChild(0);
  const QString value = "\"1\" < 2 & 'x' %1 </name><visibility>0</visibility>";
  const auto animated = AnimatedUpdate::CreateUpdate(placemark, "name", value, 2.0, QString());
  ASSERT_TRUE(animated);
  EXPECT_EQ(2.0, animated->GetDuration());
  EXPECT_FALSE(placemark->GetId().isEmpty());
  EXPECT_TRUE(Write(*animated).contains("targetId=\"" + placemark->GetId() + "\""));
  EXPECT_EQ(GetDocumentUrl(), animated->GetUpdate()->GetTargetHref());
  animated->SetStart();
  animated->GetUpdate()->ApplyEdits(1.0F);
  EXPECT_EQ(value, placemark->GetName());
  EXPECT_TRUE(placemark->GetVisibility());
  // It says the same in a document.
  const auto again = Read<AnimatedUpdate>(Write(*animated));
  animated->GetUpdate()->ApplyEdits(0.0F);
  EXPECT_EQ("a", placemark->GetName());
  again->SetStart();
  again->GetUpdate()->ApplyEdits(1.0F);
  EXPECT_EQ(value, placemark->GetName());

  const auto hostile =
      AnimatedUpdate::CreateUpdate(placemark, "name><visibility", "0", 1.0, QString());
  hostile->SetStart();
  hostile->GetUpdate()->ApplyEdits(1.0F);
  EXPECT_TRUE(placemark->GetVisibility());
  EXPECT_FALSE(AnimatedUpdate::CreateUpdate(nullptr, "name", "b", 1.0, QString()));

  const auto plain = AnimatedUpdate::CreateUpdate("a.kml", "&#97;.kml", "<Delete/>", 3.0);
  EXPECT_EQ("<targetHref>&#97;.kml</targetHref>", Element(Write(*plain), "targetHref"));
  EXPECT_TRUE(Write(*plain).contains("<Delete/>") || Write(*plain).contains("<Delete></Delete>"));
}

TEST_F(TourTest, ASoundTravelsWithTheDocument) {
  const QTemporaryDir folder;
  QFile sound(folder.filePath("bell.mp3"));
  ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
  sound.write("ding");
  sound.close();
  const QString text = "<gx:Tour xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><gx:Playlist>"
                       "<gx:SoundCue><href>%1</href></gx:SoundCue></gx:Playlist></gx:Tour>";
  const QString output = folder.filePath("out.kmz");
  const struct {
    const char* href;
    bool travels;
  } cases[] = {{"bell.mp3", true},
               {"http://h/bell.mp3", false},
               {"HTTPS://h/bell.mp3", false},
               {"ftp://h/bell.mp3", false},
               {"", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.href);
    const auto tour = ReadAt(folder.filePath("doc.kml"), text.arg(c.href));
    const QString before = Write(*tour);
    ASSERT_EQ(QString(), tour->WriteKmlFile(output));
    const QString packed = QString::fromUtf8(kmz::UnzipFile(output, QString()));
    EXPECT_EQ(c.travels ? "<href>files/bell.mp3</href>"
              : *c.href ? QStringLiteral("<href>%1</href>").arg(c.href)
                        : QString(),
              Element(packed, "href"));
    EXPECT_EQ(c.travels ? 2 : 1, kmz::ListFileEntries(output).size());
    EXPECT_EQ(before, Write(*tour));
  }
}

} // namespace vorrel::kestan
