#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using FieldTest = KmlTest;

TEST_F(FieldTest, ValuesReadAndWriteByTheRulesOfTheirType) {
  struct Case {
    const char* element;
    const char* text;
    const char* written; // the text that comes back; null when the element doesn't
  };
  const Case cases[] = {
      {"count", " 7 ", "7"},
      {"count", "11", "10"},
      {"count", "-11", "-10"},
      {"count", "abc", nullptr},
      {"count", "7.5", nullptr},
      {"mask", "-1", "0"},
      {"port", "65535", "65535"},
      {"port", "65536", "0"},
      {"size", "-9223372036854775808", "-9223372036854775808"},
      {"flag", " TRUE ", "1"},
      {"flag", "yes", "0"},
      {"ratio", "0.5", nullptr},
      {"ratio", "1e39", "0"},
      {"angle", "1e-7", "1e-07"},
      {"angle", "inf", "0"},
      {"angle", "12,5", "0"},
      {"plain", "a &amp; b", "a &amp; b"},
      {"tint", "7f00ff00", "7f00ff00"},
      {"tint", "#7f00ff00", "7f00ff00"},
      {"tint", "0X7F00FF00", "7f00ff00"},
      {"tint", "red", nullptr},
      {"moment", "2007-06-04T12:00:00.250+02:00", "2007-06-04T12:00:00.250+02:00"},
      {"moment", "yesterday", "yesterday"},
      {"axis", "1,2,3", "1,2,3"},
      {"axis", "1", "1,0,0"},
      {"place", "-122.0822035425683,37.42228990140251,0", "-122.0822035425683,37.42228990140251,0"},
      {"place", " 98.1 , 90.1 ", "98.1,90.1,0"},
      {"place", "here", "here"},
      {"mode", "on", "on"},
      {"mode", "off", nullptr},
      {"sides", "right  up left", "left right"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(QString("%1: %2").arg(c.element, c.text).toStdString());
    const auto probe = Read<Probe>(QString("<Probe><%1>%2</%1></Probe>").arg(c.element, c.text));
    const QString expected = c.written ? QString("<%1>%2</%1>").arg(c.element, c.written) : "";
    EXPECT_EQ(expected, Element(Write(*probe), c.element));
    EXPECT_TRUE(messages().isEmpty());
  }
}

TEST_F(FieldTest, ArraysAppendAndListsReplace) {
  const auto probe =
      Read<Probe>("<Probe><int>1</int><int>x</int><int>3</int>"
                  "<words>a b</words><words> c\n&amp;d </words>"
                  "<doubles>1.5 x 2</doubles>"
                  "<fix>10 20 30</fix><fix>1 2</fix><turn>0.5 -1 2</turn><turn>3</turn>"
                  "<value>v</value><value></value><value>w</value></Probe>");
  const QString xml = Write(*probe);
  EXPECT_TRUE(xml.contains("<int>1</int>\n\t<int>0</int>\n\t<int>3</int>\n")) << xml.toStdString();
  EXPECT_TRUE(xml.contains("<words>c &amp;d\t</words>"));
  EXPECT_TRUE(xml.contains("<doubles>1.5 0 2\t</doubles>"));
  EXPECT_TRUE(xml.contains("<fix>10 20 30</fix>\n\t<fix>1 2 0</fix>"));
  EXPECT_TRUE(xml.contains("<turn>0.5 -1 2</turn>\n\t<turn>3 0 0</turn>"));
  EXPECT_TRUE(xml.contains("<value>v</value>\n\t<value/>\n\t<value>w</value>"));
  EXPECT_EQ(xml, Write(*Read<Probe>(xml)));

  ProbeSchema::GetSingleton().values.fromString(*probe, nullptr, nullptr, "late", 1, nullptr);
  EXPECT_TRUE(Write(*probe).contains("<value>late</value>")) << "a value that was undefined";
}

TEST_F(FieldTest, ASetterNotifiesOnlyOfAChangeAndMarksTheFieldAlways) {
  const ProbeSchema& schema = ProbeSchema::GetSingleton();
  const auto probe = Probe::Make();
  schema.count.CheckSet(*probe, 0, probe->specified_);
  EXPECT_EQ(0, probe->notices_);
  EXPECT_EQ(schema.count.GetMaskBit(), probe->specified_);

  schema.count.CheckSet(*probe, 99, probe->specified_);
  EXPECT_EQ(1, probe->notices_);
  EXPECT_EQ(10, schema.count.get(*probe)) << "clamped to the maximum";
  schema.count.SetTypedObject(*probe, 10);
  EXPECT_EQ(2, probe->notices_) << "a plain store always notifies";
}

TEST_F(FieldTest, MergeTakesTheSecondObjectOnlyWhereItWasSpecified) {
  const ProbeSchema& schema = ProbeSchema::GetSingleton();
  const auto a = Read<Probe>("<Probe><count>1</count><ratio>0.1</ratio>"
                             "<child><Probe><count>1</count></Probe></child><foo/></Probe>");
  const auto b = Read<Probe>("<Probe><count>2</count>"
                             "<child><Probe><mask>2</mask></Probe></child></Probe>");
  const auto target = Probe::Make();
  target->merge(*a, *b);
  EXPECT_EQ(2, schema.count.get(*target));
  EXPECT_FLOAT_EQ(0.1F, schema.ratio.get(*target));
  EXPECT_FALSE(target->HasUnknownData());

  const auto clonedChild = schema.child.get(*target);
  ASSERT_TRUE(clonedChild);
  EXPECT_NE(schema.child.get(*b), clonedChild) << "the child is the target's own";
  target->merge(*a, *b);
  EXPECT_EQ(clonedChild, schema.child.get(*target)) << "a present child is merged into";
  EXPECT_EQ(1, schema.count.get(*clonedChild));
  EXPECT_EQ(2U, schema.mask.get(*clonedChild));
}

TEST_F(FieldTest, ComparisonsFollowTheValues) {
  const ProbeSchema& schema = ProbeSchema::GetSingleton();
  const auto low = Read<Probe>("<Probe><count>1</count><moment>2007-06</moment></Probe>");
  const auto high = Read<Probe>("<Probe><count>2</count><moment>2007-06-01</moment></Probe>");
  EXPECT_LT(schema.count.compare(*low, *high), 0);
  EXPECT_GT(schema.count.compare(*high, *low), 0);
  EXPECT_TRUE(schema.when.equals(*low, *high)) << "the same instant";
  EXPECT_FALSE(schema.ints.equals(*low, *low)) << "arrays never compare equal";
}

} // namespace vorrel::kestan
