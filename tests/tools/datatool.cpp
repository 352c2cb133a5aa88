// `kestan data`, run as a user runs it.

#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorrel::kestan {

namespace {

using DataToolTest = KestanToolTest;

const char kData[] =
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>"
    "<Schema name='T' id='t'><SimpleField name='n' type='int'><displayName>Number</displayName>"
    "</SimpleField><SimpleField name='b' type='bool'/></Schema>"
    "<Schema name='S' parent='Placemark'><SimpleField name='n' type='int'/></Schema>"
    "<Folder><name>left out</name>"
    "<Placemark id='a'><name>A, \"B\"</name><ExtendedData><Data "
    "name='text'><value>x\ty</value></Data>"
    "<SchemaData schemaUrl='#t'><SimpleData name='n'>12</SimpleData><SimpleData name='b'>true"
    "</SimpleData></SchemaData></ExtendedData><Point><coordinates>10,20</coordinates></Point>"
    "</Placemark><Placemark><LineString><coordinates>179,0 -177,2</coordinates></LineString>"
    "<ExtendedData><SchemaData schemaUrl='#t'><SimpleData name='n'>many</SimpleData></SchemaData>"
    "</ExtendedData></Placemark><S><n>7</n></S></Folder></Document></kml>";

TEST_F(DataToolTest, EachFeatureHasARowAndEachNameAColumn) {
  const QString file = MakeFile("a.kml", kData);
  EXPECT_EQ("id\tname\tgeometry\tlongitude\tlatitude\ttext\tn\tb\n"
            "a\tA, \"B\"\tPoint\t10\t20\tx y\t12\ttrue\n"
            "\t\tLineString\t-179\t1\t\tmany\t\n"
            "\t\t\t\t\t\t7\t\n",
            Run({"data", file}).out);
  EXPECT_EQ("id,name,geometry,longitude,latitude,text,n,b\r\n"
            "a,\"A, \"\"B\"\"\",Point,10,20,x\ty,12,true\r\n"
            ",,LineString,-179,1,,many,\r\n"
            ",,,,,,7,\r\n",
            Run({"data", "--csv", file}).out);
  EXPECT_EQ(2, Run({"data", "--csv", "--json", file}).status);
}

TEST_F(DataToolTest, JsonHasValuesByTheirTypes) {
  const Result result = Run({"data", "--json", MakeFile("a.kml", kData)});
  const QJsonObject table = QJsonDocument::fromJson(result.out.toUtf8()).object();
  const QJsonArray columns = table["columns"].toArray();
  ASSERT_EQ(3, columns.size());
  EXPECT_TRUE(columns[0].toObject()["type"].isNull());
  EXPECT_EQ("int", columns[1].toObject()["type"].toString());
  EXPECT_EQ("Number", columns[1].toObject()["displayName"].toString());
  const QJsonArray rows = table["rows"].toArray();
  ASSERT_EQ(3, rows.size());
  const QJsonObject first = rows[0].toObject();
  EXPECT_EQ(20.0, first["latitude"].toDouble());
  EXPECT_EQ(QJsonValue(12), first["data"].toObject()["n"]);
  EXPECT_EQ(QJsonValue(true), first["data"].toObject()["b"]);
  EXPECT_EQ(QJsonValue("many"), rows[1].toObject()["data"].toObject()["n"]);
  EXPECT_TRUE(rows[2].toObject()["longitude"].isNull());
}

} // namespace

} // namespace vorrel::kestan
