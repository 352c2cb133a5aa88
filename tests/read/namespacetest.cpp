#include "kestan/read/namespaces.h"
#include "kestan/read/wmshandler.h"
#include "tests/read/readtest.h"

#include <cstring>

namespace vorrel::kestan {

TEST(NamespaceTest, UrisStandForTheirNamespaceAndVersion) {
  struct Case {
    const char* uri;
    Namespace ns;
    int major;
  };
  const Case cases[] = {
      {"http://www.opengis.net/kml/2.2", Namespace::kKml, 2},
      {"http://old.vorrel.com/kml/2.1", Namespace::kKml, 2},
      {"http://www.vorrel.com/kml/ext/2.2", Namespace::kExt, 2},
      {"urn:x?http://www.opengis.net/kml/2", Namespace::kKml, 2},
      {"http://www.opengis.net/kml/3.0", Namespace::kKml, 3},
      {"http://www.opengis.net/kml/12345678901234567890", Namespace::kKml, 123456789},
      {"http://www.opengis.net/kml/0.9", Namespace::kUnknown, -1},
      {"http://www.opengis.net/kml/", Namespace::kUnknown, -1},
      {"http://www.OPENGIS.net/kml/2.2", Namespace::kUnknown, -1},
      {"http://www.w3.org/2005/Atom", Namespace::kAtom, -1},
      {"urn:oasis:names:tc:ciq:xsdschema:xAL:2.0", Namespace::kXal, -1},
      {"", Namespace::kNone, -1},
      {"urn:elsewhere", Namespace::kUnknown, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.uri);
    int major = 7;
    int minor = 7;
    EXPECT_EQ(c.ns, NamespaceStringToEnum(QString::fromLatin1(c.uri), &major, &minor));
    EXPECT_EQ(c.major, major);
    EXPECT_EQ(-1, minor);
    const QString written = NamespaceEnumToString(c.ns);
    EXPECT_EQ(c.ns == Namespace::kUnknown, written.isNull());
    if (!written.isNull()) {
      EXPECT_EQ(c.ns, NamespaceStringToEnum(written, nullptr, nullptr));
    }
  }
  EXPECT_TRUE(IsNamespaceStandard("xal", Namespace::kXal));
}

using NamespaceReadTest = ReadTest;

TEST_F(NamespaceReadTest, RegisteredBasesReadTypedAndAreWrittenWithTheBuiltInOnes) {
  const QByteArray text = "<kml xmlns='http://example.com/kml/2.1' "
                          "xmlns:e='http://example.com/kml/more/2.2'><Placemark><name>a</name>"
                          "<e:balloonVisibility>1</e:balloonVisibility></Placemark></kml>";
  EXPECT_FALSE(ReadObject(text));
  EXPECT_FALSE(RegisterNamespaceBase(Namespace::kAtom, "http://example.com/"));
  EXPECT_TRUE(RegisterNamespaceBase(Namespace::kKml, "http://example.com/kml/"));
  EXPECT_TRUE(RegisterNamespaceBase(Namespace::kExt, "http://example.com/kml/more/"));
  const QString written = RoundTrip(text);
  UnregisterNamespaceBases();
  EXPECT_EQ("<name>a</name>", Element(written, "name"));
  EXPECT_EQ("<gx:balloonVisibility>1</gx:balloonVisibility>",
            Element(written, "gx:balloonVisibility"));
  EXPECT_FALSE(written.contains("example.com"));
}

TEST_F(NamespaceReadTest, TheVersionLimitHoldsInEveryErrorMode) {
  for (int handling = 0; handling <= 3; ++handling) {
    for (const char* base : {"http://www.opengis.net/kml/", "http://www.vorrel.com/kml/ext/"}) {
      const QByteArray start =
          QByteArray("<kml xmlns='http://www.opengis.net/kml/2.2' xmlns:x='") + base;
      const Parse tooNew(start + "3.0'><Placemark/></kml>", handling);
      EXPECT_FALSE(tooNew.object);
      EXPECT_EQ("This client can only process KML files with version less than 3",
                tooNew.handler.GetErrorText());
      EXPECT_TRUE(Parse(start + "1.0'><Placemark/></kml>", handling).object);
    }
  }
}

TEST_F(NamespaceReadTest, InnerDeclarationsHideOuterOnesUntilTheirElementEnds) {
  const auto placemark = Read<Placemark>(
      "<k:kml xmlns:k='http://www.opengis.net/kml/2.2'>"
      "<Placemark xmlns='http://www.opengis.net/kml/2.2' xmlns:n='urn:other'>"
      "<Point xmlns:n='http://www.opengis.net/kml/2.2'><n:extrude>1</n:extrude></Point>"
      "<n:name>no</n:name><name>yes</name></Placemark></k:kml>");
  EXPECT_EQ("yes", placemark->GetName());
  EXPECT_EQ(QStringList{"Unknown element <n:name>"}, messages());
}

TEST_F(NamespaceReadTest, AnEmptyUriMeansKmlAndAnUndeclaredPrefixNothing) {
  EXPECT_EQ(
      "b", Read<Placemark>("<kml xmlns=''><Placemark><name>b</name></Placemark></kml>")->GetName());
  const auto placemark = Read<Placemark>("<Placemark><q:name>no</q:name></Placemark>");
  EXPECT_EQ("", placemark->GetName());
}

TEST_F(NamespaceReadTest, AfterAnInnerOnlyDefaultUnprefixedNamesAreUnknown) {
  const char* const text =
      "<Placemark><name xmlns='http://www.opengis.net/kml/2.2'>a</name><open>1</open></Placemark>";
  const auto placemark = Read<Placemark>(text);
  EXPECT_EQ("a", placemark->GetName());
  EXPECT_EQ(QStringList{"Unknown element <open>"}, messages());
  // They stay so, rather than become known by being written.
  EXPECT_EQ("<open xmlns=\"urn:undeclared:\">1</open>", Element(RoundTrip(text), "open"));
}

TEST_F(NamespaceReadTest, WithoutAPrefixOrADeclarationNamesMayBeThoseOfWms) {
  struct Case {
    const char* text;
    bool isRead;
  };
  const Case cases[] = {
      {"<Placemark/>", false},
      {"<Placemark xmlns=''/>", false}, // in no namespace
      {"<Placemark xmlns='http://www.opengis.net/kml/2.2'/>", true},
      {"<k:Placemark xmlns:k='http://www.opengis.net/kml/2.2'/>", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    WmsHandler handler(GetDocumentUrl(), 2, nullptr, nullptr, nullptr);
    const auto* bytes = reinterpret_cast<const unsigned char*>(c.text);
    EXPECT_EQ(c.isRead,
              ExpatHandler::LoadXml(handler, bytes, std::strlen(c.text)).get() != nullptr);
    EXPECT_TRUE(ReadObject(QByteArray(c.text))) << "otherwise they are those of KML";
  }
}

} // namespace vorrel::kestan
