#include "kestan/feature/document.h"
#include "kestan/feature/placemark.h"
#include "kestan/style/style.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using DocumentTest = KmlTest;

namespace {

QString Squeezed(QString text) { return text.remove('\n').remove('\t'); }

RefPtr<Style> MakeStyle(const QString& id, const QString& url = "file:///dir/doc.kml") {
  return RefPtr<Style>(new Style(KmlId(id, url), QString()));
}

} // namespace

TEST_F(DocumentTest, ContentIsWrittenInAFixedOrder) {
  const auto document =
      Read<Document>("<Document><Placemark><name>p</name></Placemark><Other id=\"s\"/><Folder/>"
                     "<name>d</name></Document>");
  ASSERT_TRUE(document);
  const auto style = MakeStyle("s");
  document->GetChild(0)->SetReferencedStyleSelector(style.get());
  EXPECT_TRUE(Squeezed(Write(*document))
                  .contains("<Document><name>d</name><Other id=\"s\"></Other><Style id=\"s\">"
                            "</Style><Placemark><name>p</name><styleUrl>#s</styleUrl></Placemark>"
                            "<Folder></Folder></Document>"))
      << Write(*document).toStdString();
}

TEST_F(DocumentTest, AStyleWithoutAnIdBecomesTheDocumentsOwn) {
  const RefPtr<Document> document(new Document(KmlId(), QString()));
  const auto named = MakeStyle("a");
  const auto anonymous = MakeStyle("");
  EXPECT_TRUE(document->AddStyleSelector(*named));
  EXPECT_FALSE(document->AddStyleSelector(*named));
  EXPECT_TRUE(document->AddStyleSelector(*anonymous));
  EXPECT_EQ(1, document->GetStyleSelectorCount());
  EXPECT_EQ(named.get(), document->GetStyleSelector(0));
  EXPECT_EQ(anonymous.get(), document->GetInlineStyleSelector());
  EXPECT_TRUE(anonymous->HasOwner(*document));
}

TEST_F(DocumentTest, AStyleThatComesIntoADocumentLeavesTheOther) {
  const RefPtr<Document> home(new Document(KmlId(), QString()));
  const RefPtr<Document> other(new Document(KmlId(), QString()));
  const auto shared = MakeStyle("s");
  const auto own = MakeStyle("o");
  home->AddStyleSelector(*MakeStyle("a"));
  home->AddStyleSelector(*shared);
  other->AddStyleSelector(*own);
  other->SetReferencedStyleSelector(shared.get());
  EXPECT_EQ(-1, other->FindStyleSelector(*shared)) << "it only refers to it";
  EXPECT_FALSE(other->RemStyleSelector(*shared));
  EXPECT_EQ(own.get(), other->GetStyleSelector(0));

  EXPECT_TRUE(other->InsertStyleSelector(7, *shared)) << "beyond the end";
  EXPECT_FALSE(other->AddStyleSelector(*shared));
  EXPECT_TRUE(other->InsertStyleSelector(0, *shared));
  EXPECT_EQ(-1, home->FindStyleSelector(*shared)) << "it has left";
  EXPECT_EQ(1, home->GetStyleSelectorCount());
  EXPECT_EQ("a", home->GetStyleSelector(0)->GetId());
  EXPECT_EQ(0, other->FindStyleSelector(*shared));
}

TEST_F(DocumentTest, OwnerDocumentIsTheNearest) {
  const auto outer = Read<Document>("<Document><Document id='inner'><Folder><Placemark>"
                                    "<Point id='p'/></Placemark></Folder></Document></Document>");
  ASSERT_TRUE(outer);
  EXPECT_EQ(SchemaObject::find(GetDocumentUrl(), "inner"),
            SchemaObject::find(GetDocumentUrl(), "p")->GetOwnerDocument());
}

} // namespace vorrel::kestan
