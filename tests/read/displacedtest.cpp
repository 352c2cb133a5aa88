// Several values or children for one place of an object.

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/schema.h"
#include "kestan/geometry/linestring.h"
#include "kestan/spacetime/timestamp.h"
#include "kestan/style/linestyle.h"
#include "tests/read/readtest.h"
#include "tests/support/observers.h"

#include <QRegularExpression>

#include <functional>
#include <iterator>

namespace vorrel::kestan {

namespace {

class DisplacedTest : public KmlTest {
protected:
  /// What stands inside the root, without the blanks between elements.
  static QString Plain(const QString& xml) {
    QString text = xml.mid(xml.indexOf('>', xml.indexOf("<kml")) + 1);
    text.remove(QRegularExpression("\\s+(?=<)|(?<=>)\\s+"));
    return text.remove("</kml>").trimmed();
  }
  /// The element with declarations for all prefixes.
  QString Declare(QString text) {
    if (namespaces_.isEmpty()) {
      const QString empty = Write(*Read<Placemark>("<Placemark/>"));
      const auto start = empty.indexOf("<kml ") + 4;
      namespaces_ = empty.mid(start, empty.indexOf('>', start) - start) + " xmlns:u=\"urn:u\"";
    }
    return text.insert(text.indexOf('>'), namespaces_);
  }

private:
  QString namespaces_;
};

/// Calls `visit` for each class and each of its fields that a document can give more than once.
void ForEachPlace(const Schema& schema,
                  const std::function<void(const Schema&, const Field&)>& visit) {
  for (const Field* field : schema.GetSerializedFields()) {
    const bool isValue = field->GetType() == Field::kElement && !field->GetName().isEmpty();
    if ((isValue || field->GetObjSchema()) && !field->IsRepeatable())
      visit(schema, *field);
  }
  for (const Schema* derived : schema.GetDerived())
    ForEachPlace(*derived, visit);
}

void AppendConcrete(const Schema& schema, QStringList& tags) {
  if (const auto object = schema.CreateInstance(KmlId(), "", nullptr))
    tags += object->GetPrefixedName();
  for (const Schema* derived : schema.GetDerived())
    AppendConcrete(*derived, tags);
}

/// Elements for one place: valid and invalid ones, the default and the empty one, with unknown
/// attributes and children.
QStringList GetElements(const Field& field, const SchemaObject& fresh) {
  QStringList elements;
  const QString tag = field.GetPrefixedElem();
  if (const Schema* child = field.GetObjSchema()) {
    QStringList classes;
    AppendConcrete(*child, classes);
    for (const QString& name : classes.mid(0, 3)) {
      for (const char* form : {"<%1/>", "<%1 u=\"1\">2001</%1>", "<%1 id=\"c\"><u:x>1</u:x></%1>"})
        elements += QString(form).arg(name);
    }
    for (QString& element : elements) {
      if (!field.GetName().isEmpty())
        element = QString("<%1 w=\"%2\">%3</%1>").arg(tag).arg(element.size()).arg(element);
    }
    if (!field.GetName().isEmpty())
      elements += QString("<%1 w=\"0\"/>").arg(tag);
    return elements;
  }
  QStringList texts{"",
                    "1",
                    "0",
                    "a &lt; b",
                    "2001-02-03",
                    "3,4,5 6,7,8",
                    field.toString(fresh, -1).toHtmlEscaped()};
  if (const auto* names = dynamic_cast<const EnumField*>(&field))
    texts += names->GetEnum().getString(2);
  for (const QString& text : texts)
    elements += QString("<%1>%2</%1>").arg(tag, text);
  elements += QString("<%1 u:a=\"1\" x=\"2\">1</%1>").arg(tag);
  elements += QString("<%1 b=\"&amp;\"/>").arg(tag);
  elements += QString("<%1>1<u:x>2</u:x></%1>").arg(tag);
  return elements;
}

} // namespace

TEST_F(DisplacedTest, AnySequenceForAnyPlaceIsStableOnceItWasWritten) {
  int documents = 0;
  ForEachPlace(SchemaObject::GetClassSchema(), [&](const Schema& schema, const Field& field) {
    const auto fresh = schema.CreateInstance(KmlId(), "", nullptr);
    // Classes that no document has by themselves, and orders to other objects.
    if (!fresh || Element(Write(*fresh), fresh->GetPrefixedName()).isEmpty() ||
        field.HasFlag(Field::kNoWrite) || field.HasFlag(Field::kProxy) ||
        !ReadObject(Write(*fresh)) || HasFailure())
      return;
    const QStringList elements = GetElements(field, *fresh);
    const int count = static_cast<int>(elements.size());
    // Each field whole in the class that has it, and in samples in those that inherit it.
    const int step = &field.GetSchema() == &schema ? 1 : 7;
    for (int i = 0; i < count * count; i += step) {
      const auto take = [&](int which, const char* id) { // ids are unique
        return QString(elements[which % count]).replace("id=\"c\"", QString("id=\"%1\"").arg(id));
      };
      const QString first = take(i / count, "c1");
      const QString second = take(i, "c2");
      const QString third = i % 3 == 0 ? take(i / 3, "c3") : QString();
      const QString text = Declare("<" + fresh->GetPrefixedName() + ">" + first + second + third +
                                   "</" + fresh->GetPrefixedName() + ">");
      SCOPED_TRACE(text.mid(text.indexOf('>')).toStdString());
      SCOPED_TRACE(schema.GetName().toStdString());
      const auto object = ReadObject(text);
      ASSERT_TRUE(object) << error().toStdString();
      const QString written = Write(*object);
      if (field.GetName() != "styleUrl") { // that of a clone is absolute
        EXPECT_EQ(written, Write(*object->clone(true, nullptr)));
      }
      const auto again = ReadObject(written);
      ASSERT_TRUE(again) << error().toStdString() << written.toStdString();
      EXPECT_EQ(written, Write(*again));
      // Relative references come absolute.
      EXPECT_TRUE(field.toString(*again, -1).endsWith(field.toString(*object, -1)));
      ++documents;
    }
  });
  EXPECT_GT(documents, 5000);
}

TEST_F(DisplacedTest, TheLastOneCountsAndTheOthersStandAheadOfIt) {
  struct Case {
    const char* text;
    const char* written; ///< The same where it's null.
  };
  const Case cases[] = {
      {"<Placemark><name>a</name><open>1</open><name>b</name></Placemark>",
       "<Placemark><name>a</name><name>b</name><open>1</open></Placemark>"},
      // The last one is written although it's the default, or empty.
      {"<Placemark><visibility>0</visibility><visibility>1</visibility></Placemark>", nullptr},
      {"<Placemark><styleUrl>#a</styleUrl><styleUrl></styleUrl></Placemark>", nullptr},
      {"<Placemark><Style><LineStyle><width>2</width></LineStyle><LineStyle></LineStyle></Style>"
       "</Placemark>",
       nullptr},
      {"<Placemark><TimeStamp><when>2001</when></TimeStamp><TimeInstant/></Placemark>",
       "<Placemark><TimeStamp><when>2001</when></TimeStamp><TimeStamp></TimeStamp></Placemark>"},
      {"<Placemark><name a=\"1\">x &amp; y</name><name></name><name b=\"2\">z</name></Placemark>",
       nullptr},
      // Children of any class that has room in the place.
      {"<Placemark><Point/><name>n</name><LineString id=\"l\"/></Placemark>",
       "<Placemark><name>n</name><Point><coordinates>0,0,0</coordinates></Point><LineString "
       "id=\"l\">"
       "<coordinates></coordinates></LineString></Placemark>"},
      {"<Document><Style id=\"a\"/><Style><LineStyle><width>2</width></LineStyle></Style><Style/>"
       "<Style id=\"b\"/></Document>",
       "<Document><Style><LineStyle><width>2</width></LineStyle></Style><Style></Style>"
       "<Style id=\"a\"></Style><Style id=\"b\"></Style></Document>"},
      {"<Polygon><outerBoundaryIs a=\"1\"><LinearRing id=\"1\"/><LinearRing "
       "id=\"2\"/></outerBoundaryIs>"
       "<outerBoundaryIs b=\"2\"/><outerBoundaryIs><LinearRing "
       "id=\"3\"/></outerBoundaryIs></Polygon>",
       "<Polygon>"
       "<outerBoundaryIs b=\"2\"></outerBoundaryIs><outerBoundaryIs><LinearRing id=\"1\">"
       "<coordinates></coordinates></LinearRing></outerBoundaryIs><outerBoundaryIs a=\"1\">"
       "<LinearRing id=\"2\"><coordinates></coordinates></LinearRing></outerBoundaryIs>"
       "<outerBoundaryIs><LinearRing id=\"3\"><coordinates></coordinates></LinearRing>"
       "</outerBoundaryIs>"
       "</Polygon>"},
      {"<TimePeriod><begin><TimeInstant><timePosition>1999</timePosition></TimeInstant></"
       "begin><begin>"
       "<TimeInstant/></begin></TimePeriod>",
       "<TimeSpan><begin>1999</begin><begin></begin></TimeSpan>"},
      {"<TimeStamp><when>1999</when>2001</TimeStamp>",
       "<TimeStamp><when>1999</when><when>2001</when></TimeStamp>"},
      {"<Icon><href>a.png</href>b.png</Icon>",
       "<Icon><href>a.png</href><href>http://example.com/dir/b.png</href></Icon>"},
      // Two names for one value, of which the extension's counts.
      {"<LineString><altitudeMode>absolute</altitudeMode><gx:altitudeMode>clampToSeaFloor"
       "</gx:altitudeMode><coordinates></coordinates></LineString>",
       nullptr},
      {"<LineString><coordinates type=\"polyline\">1,2 "
       "3,4</coordinates><coordinates>5,6</coordinates>"
       "</LineString>",
       "<LineString><coordinates type=\"polyline\">1,2 3,4</coordinates><coordinates>5,6,0"
       "</coordinates></LineString>"},
      // What an older element has made gives way.
      {"<Style><labelScale>2</labelScale><LabelStyle/></Style>", "<Style></Style>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_TRUE(ReadObject(Declare(c.text)) && messages().filter("Unexpected").isEmpty());
    EXPECT_EQ(QString(c.written ? c.written : c.text), Plain(RoundTrip(Declare(c.text))));
  }
}

TEST_F(DisplacedTest, ATextThatGivesNoValueComesBackUntilTheFieldIsSet) {
  const auto setWhen = [](SchemaObject& o) { static_cast<TimeStamp&>(o).SetWhen(DateTime()); };
  const auto setCoord = [](SchemaObject& o) {
    static_cast<Point&>(o).SetCoord(static_cast<Point&>(o).GetCoord());
  };
  const auto setMode = [](SchemaObject& o) {
    static_cast<Geometry&>(o).SetAltitudeMode(kClampToGround);
  };
  const auto addCoord = [](SchemaObject& o) {
    static_cast<LineString&>(o).AddCoord(0, Vec3<double>(0.0, 0.0, 0.0));
  };
  struct Case {
    const char* text;
    void (*set)(SchemaObject&);
    const char* afterwards;
  };
  const Case cases[] = {
      {"<TimeStamp><when>1994-00</when></TimeStamp>", setWhen, "<TimeStamp></TimeStamp>"},
      {"<TimeStamp><when a=\"&lt;\">x &amp; y</when></TimeStamp>", setWhen,
       "<TimeStamp><when a=\"&lt;\"></when></TimeStamp>"},
      {"<Point><coordinates>north</coordinates></Point>", setCoord,
       "<Point><coordinates>0,0,0</coordinates></Point>"},
      {"<Point><coordinates></coordinates></Point>", setCoord,
       "<Point><coordinates>0,0,0</coordinates></Point>"},
      {"<LineString><altitudeMode "
       "u=\"1\">high</altitudeMode><coordinates></coordinates></LineString>",
       setMode,
       "<LineString><altitudeMode u=\"1\">clampToGround</altitudeMode><coordinates></coordinates>"
       "</LineString>"},
      {"<LineString><gx:altitudeMode>deep</gx:altitudeMode><coordinates>a "
       "b</coordinates></LineString>",
       setMode, "<LineString><coordinates>a b</coordinates></LineString>"},
      {"<LineString><coordinates>a b</coordinates></LineString>", addCoord,
       "<LineString><coordinates>0,0,0</coordinates></LineString>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(c.text, Plain(RoundTrip(Declare(c.text))));
    const auto object = ReadObject(Declare(c.text));
    const auto copy = object->clone(true, nullptr);
    c.set(*object);
    EXPECT_EQ(c.afterwards, Plain(Write(*object)));
    EXPECT_EQ(c.text, Plain(Write(*copy)));
    object->copy(*copy, true, nullptr);
    EXPECT_EQ(c.text, Plain(Write(*object)));
  }
}

TEST_F(DisplacedTest, DisplacedChildrenAreFoundAndGoWithTheSet) {
  const QString text = "<Folder><Style id=\"a\"><LineStyle><width>2</width></LineStyle></Style>"
                       "<Style id=\"b\"><LineStyle><width>3</width></LineStyle></Style>"
                       "<Style id=\"c\"></Style>"
                       "<Placemark><styleUrl>#a</styleUrl></Placemark>"
                       "<Placemark><styleUrl>#b</styleUrl></Placemark></Folder>";
  EXPECT_EQ(text, Plain(RoundTrip(text)));
  const auto folder = Read<Folder>(text);
  const auto width = [&](int child) {
    return folder->GetChild(child)->getRenderStyle(kStyleNormal)->GetLineStyle()->GetWidth();
  };
  EXPECT_EQ(2.0F, width(0));
  EXPECT_EQ(3.0F, width(1));
  EXPECT_EQ(folder.get(), ById("a")->GetOwner(0));

  const auto clone = folder->clone(true, nullptr);
  folder->SetInlineStyleSelector(nullptr);
  EXPECT_EQ(nullptr, ById("c"));
  EXPECT_EQ(2.0F, width(0)); // held by the reference
  EXPECT_FALSE(ById("a")->HasOwner(*folder));
  EXPECT_EQ(3, Write(*clone, kWriteNoHoist).count("<Style id="));
}

TEST_F(DisplacedTest, ADisplacedChildMayGoElsewhere) {
  const QString text =
      "<Placemark><LineString id=\"1\"/><LineString id=\"2\"/><Point id=\"3\"/></Placemark>";
  const auto placemark = Read<Placemark>(text);
  const RefPtr<Placemark> other(new Placemark(KmlId(), ""));
  const RefPtr<Geometry> first(ById<Geometry>("1"));
  EXPECT_EQ(placemark.get(), first->GetOwner(0));
  EXPECT_EQ(placemark->GetBaseUrl(), first->GetBaseUrl());
  other->SetGeometry(first.get());
  EXPECT_EQ(other.get(), first->GetOwner(0));
  EXPECT_FALSE(Write(*placemark).contains("id=\"1\""));

  // Where it was displaced from, it displaces nothing.
  placemark->SetGeometry(ById<Geometry>("2"));
  EXPECT_EQ(placemark.get(), ById("2")->GetOwner(0));
  EXPECT_EQ(nullptr, ById("3"));
  EXPECT_EQ("<Placemark><LineString id=\"2\"><coordinates></coordinates></LineString></Placemark>",
            Plain(Write(*placemark)));

  auto gone = Read<Placemark>(text);
  const RefPtr<SchemaObject> kept(ById("2"));
  gone.reset();
  EXPECT_EQ(nullptr, kept->GetOwner(0));
}

TEST_F(DisplacedTest, AnObserverMayEditWhileOneIsDisplaced) {
  static RefPtr<Placemark> other;
  const std::function<void(Placemark&)> deeds[] = {
      [](Placemark& placemark) { placemark.SetGeometry(nullptr); },
      [](Placemark& placemark) {
        placemark.SetGeometry(RefPtr<Point>(new Point(KmlId("new", ""), "")).get());
      },
      [](Placemark& placemark) { other->SetGeometry(placemark.GetGeometry()); },
      [](Placemark&) { other->SetGeometry(ById<Geometry>("1")); },
      [](Placemark& placemark) { placemark.SetGeometry(ById<Geometry>("1")); },
      [](Placemark& placemark) { placemark.copy(*other, true, nullptr); },
  };
  for (std::size_t deed = 0; deed < std::size(deeds); ++deed) {
    for (const int turn : {1, 2, 3}) {
      SCOPED_TRACE(testing::Message() << deed << ' ' << turn);
      other = Read<Placemark>("<Placemark><Point id=\"own\"/></Placemark>");
      RefPtr<Placemark> placemark;
      {
        // Watches the placemark from its beginning on.
        Placemark* read = nullptr;
        int left = turn;
        OnChange editor(nullptr, [&](const Field& field) {
          if (field.GetObjSchema() == &Geometry::GetClassSchema() && --left == 0)
            deeds[deed](*read);
        });
        OnCreate start(Placemark::GetClassSchema(), CreationObserver::kAnyThread);
        start.deed = [&](SchemaObject& object) {
          if (left > 0)
            editor.SetObserved(read = static_cast<Placemark*>(&object));
        };
        placemark = Read<Placemark>("<Placemark><Point id=\"1\"/><LineString id=\"2\"/>"
                                    "<name>n</name><Point id=\"3\"/></Placemark>");
      }
      for (const RefPtr<Placemark>& owner : {placemark, other}) {
        mmvector<SchemaObject*> shapes;
        owner->FindBySchema(Geometry::GetClassSchema(), shapes);
        for (const SchemaObject* shape : shapes)
          EXPECT_EQ(owner.get(), shape->GetOwner(0)) << shape->GetId().toStdString();
        const QString text = Write(*owner);
        EXPECT_EQ(static_cast<int>(shapes.size()), text.count("<coordinates>"));
        EXPECT_EQ(text, RoundTrip(text));
      }
    }
  }
  other.reset();
}

TEST_F(DisplacedTest, EachDisplacedOneIsToldOf) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  const Parse parse("<Placemark>\n<name>a</name>\n<name>b</name>\n<Point/><Point/>\n<Point/>"
                    "</Placemark>",
                    1, recorder.get());
  mmvector<qint64> lines;
  for (const ParseReport& finding : recorder->findings) {
    if (finding.code == ReportCode::kSecondValue)
      lines.push_back(finding.line);
  }
  EXPECT_EQ((mmvector<qint64>{3, 4, 5}), lines);
}

} // namespace vorrel::kestan
