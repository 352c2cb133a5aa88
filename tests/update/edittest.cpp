#include "kestan/core/enum.h"
#include "kestan/host/pump.h"
#include "tests/core/probeschema.h"
#include "tests/support/workers.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

namespace {

QString Change(const QString& type, const QString& id, const QString& values) {
  return QStringLiteral("<Change><%1 targetId=\"%2\">%3</%1></Change>").arg(type, id, values);
}

} // namespace

using UpdateEditTest = UpdateTest;

TEST_F(UpdateEditTest, EachKindOfValueIsBlendedInItsWay) {
  struct Case {
    const char* field;
    const char* before;
    const char* after;
    float fraction;
    const char* value;
  };
  const Case cases[] = {
      {"count", "1", "2", 0.5F, "1"},
      {"count", "-1", "-2", 0.5F, "-1"},
      {"count", "-10", "10", 0.5F, "0"},
      {"count", "10", "-10", 0.25F, "5"},
      {"mask", "10", "4", 0.5F, "7"},
      {"mask", "0", "4294967295", 0.5F, "2147483647"},
      {"port", "65535", "0", 0.5F, "32767"},
      {"size", "-9223372036854775807", "9223372036854775807", 0.75F, "4611686018427387903"},
      {"flag", "0", "1", 0.01F, "1"},
      {"flag", "1", "0", 0.99F, "1"},
      {"ratio", "1", "-2", 0.5F, "-0.5"},
      {"angle", "1", "2", 0.25F, "1.25"},
      {"axis", "1 2 3", "3 0 3", 0.5F, "2,1,3"},
      {"place", "10,20,0", "20,10,100", 0.5F, "15,15,50"},
      {"plain", "old", "new", 0.99F, "old"},
      {"tint", "00ff00ff", "ffff0080", 0.5F, "7fff00bf"},
      {"moment", "2000-01-01T00:00:00Z", "2000-01-01T00:00:10Z", 0.5F, "2000-01-01T00:00:05Z"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.field) + " " + c.before + " " + c.after);
    const auto element = [&](const char* value) {
      return QStringLiteral("<%1>%2</%1>").arg(QLatin1String(c.field), QLatin1String(value));
    };
    const auto probe = ReadObject("<Probe id=\"p\">" + element(c.before) + "</Probe>");
    const QString before = Get(*probe, c.field);
    const auto update = MakeUpdate(Change("Probe", "p", element(c.after)));
    update->SetKeepEdits(true);
    update->Apply(nullptr, c.fraction);
    EXPECT_EQ(c.value, Get(*probe, c.field));
    update->ApplyEdits(0.0F);
    EXPECT_EQ(before, Get(*probe, c.field));
  }
}

TEST_F(UpdateEditTest, AnEnumerationStepsAtTheEnd) {
  const auto probe = Read<Probe>("<Probe id=\"p\"/>");
  const Enum& modes = ProbeSchema::GetSingleton().mode.GetEnum();
  const QString last = modes.getString(1);
  const auto update = MakeUpdate(Change("Probe", "p", "<mode>" + last + "</mode>"));
  update->SetKeepEdits(true);
  update->Apply(nullptr, 0.99F);
  EXPECT_EQ(modes.getString(0), Get(*probe, "mode"));
  update->ApplyEdits(1.0F);
  EXPECT_EQ(last, Get(*probe, "mode"));
}

TEST_F(UpdateEditTest, ArraysOfValuesAreSetAtOnceWhereThatIsAllowed) {
  const QString values = "<int>3</int><words>x y</words><fix>1 2 3</fix>";
  for (const bool isStranger : {true, false}) {
    const auto probe =
        ReadObject(QString("<Probe id=\"p\"><int>1</int><int>2</int><words>a b c</words></Probe>"));
    const auto update = MakeUpdate(Change("Probe", "p", values), "http://example.com/dir/doc.kml",
                                   isStranger ? "http://b/u.kml" : "http://example.com/u.kml");
    update->CreateEdits(nullptr);
    EXPECT_EQ(0, update->GetEditCount());
    EXPECT_EQ(isStranger ? 3 : 0, TakeReports().size());
    EXPECT_EQ(isStranger ? "1 2" : "1 2 3", Get(*probe, "int"));
    EXPECT_EQ(isStranger ? "a b c" : "x y", Get(*probe, "words"));
    EXPECT_EQ(isStranger, Get(*probe, "fix").isEmpty());
  }
}

TEST_F(UpdateEditTest, ListsOfPositionsAreAsLongAsTheLongerOneInBetween) {
  struct Case {
    const char* before;
    const char* after;
    float fraction;
    const char* between;
  };
  const Case cases[] = {
      {"0,0,0 10,20,30", "10,0,0 20,40,0", 0.5F, "5,0,0 15,30,15"},
      {"0,0,0 10,20,30", "10,0,0 20,40,0", 0.25F, "2.5,0,0 12.5,25,22.5"},
      // The middle one is as near to the end as to the start, and goes with the end.
      {"0,0,0 10,0,0", "0,10,0 20,10,0 40,10,0", 0.5F, "0,5,0 15,5,0 25,5,0"},
      {"0,10,0 20,10,0 40,10,0", "0,0,0 10,0,0", 0.5F, "0,5,0 15,5,0 25,5,0"},
      {"10,0,0", "20,0,0 30,0,0 40,0,0", 0.5F, "15,0,0 20,0,0 25,0,0"},
      {"", "1,1,1 2,2,2 3,3,3", 0.5F, ""},
      {"1,1,1 2,2,2", "", 0.5F, "1,1,1 2,2,2"},
      {"10,0,0", "20,10,0", 0.5F, "15,5,0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.before) + " to " + c.after);
    const auto getList = [](const SchemaObject& line) { return Get(line, "coordinates"); };
    const auto list = [](const char* text) {
      return QStringLiteral("<coordinates>%1</coordinates>").arg(QLatin1String(text));
    };
    const auto line = ReadObject("<LineString id=\"l\">" + list(c.before) + "</LineString>");
    const auto update = MakeUpdate(Change("LineString", "l", list(c.after)));
    update->SetKeepEdits(true);
    update->Apply(nullptr, c.fraction);
    EXPECT_EQ(c.between, getList(*line));
    update->ApplyEdits(1.0F);
    EXPECT_EQ(c.after, getList(*line));
    update->ApplyEdits(0.0F);
    EXPECT_EQ(c.before, getList(*line));
  }
}

TEST_F(UpdateEditTest, PairsWithLatitudeFirstMoveALineToo) {
  const auto line = ReadObject(QString("<LineString id=\"l\"/>"));
  Apply(Change("LineString", "l", "<coordinates type=\"polyline\">1,2 3,4</coordinates>"));
  EXPECT_EQ("2,1,0 4,3,0", Get(*line, "coordinates"));
}

TEST_F(UpdateEditTest, EditsGoAfterTheFirstUseUnlessTheyAreKept) {
  const auto probe = ReadObject(QString("<Probe id=\"p\"><count>1</count></Probe>"));
  const auto update = MakeUpdate(Change("Probe", "p", "<count>5</count>"));
  update->CreateEdits(nullptr);
  EXPECT_EQ(1, update->GetEditCount());
  update->ApplyEdits(1.0F);
  EXPECT_EQ(0, update->GetEditCount());
  update->ApplyEdits(0.0F);
  EXPECT_EQ("5", Get(*probe, "count"));

  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  update->CreateEdits(nullptr);
  EXPECT_EQ(2, update->GetEditCount());
  update->SetKeepEdits(false);
  update->ApplyEdits(0.5F);
  EXPECT_EQ(0, update->GetEditCount());
}

TEST_F(UpdateEditTest, AChangeByAnybodyElseLeavesAnEditAlone) {
  const auto probe = Read<Probe>("<Probe id=\"p\"><count>1</count></Probe>");
  const auto update = MakeUpdate(Change("Probe", "p", "<count>5</count>"));
  update->SetKeepEdits(true);
  update->Apply(nullptr, 0.5F);
  ProbeSchema::GetSingleton().count.SetTypedObject(*probe, 100);
  update->ApplyEdits(0.5F);
  EXPECT_EQ("3", Get(*probe, "count"));
}

TEST_F(UpdateEditTest, AWorkerHasTheMainThreadApplyTheLastFraction) {
  const auto probe = ReadObject(QString("<Probe id=\"p\"><size>0</size></Probe>"));
  const auto update = MakeUpdate(Change("Probe", "p", "<size>100</size>"));
  update->SetKeepEdits(true);
  update->CreateEdits(nullptr);
  {
    Workers workers(1, [&](int) {
      update->ApplyEdits(0.25F);
      update->ApplyEdits(0.75F);
    });
    workers.Finish();
    EXPECT_EQ("0", Get(*probe, "size"));
    Pump::Run(1.0);
    EXPECT_EQ("75", Get(*probe, "size"));
  }
  {
    // What the main thread does itself is newer than what waits.
    Workers workers(1, [&](int) { update->ApplyEdits(0.25F); });
    workers.Finish();
    update->ApplyEdits(0.5F);
    Pump::Run(1.0);
    EXPECT_EQ("50", Get(*probe, "size"));
  }
}

} // namespace vorrel::kestan
