#include "kestan/link/networklink.h"

#include "kestan/feature/document.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/kml.h"
#include "kestan/feature/linksnippet.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/pump.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/link/link.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/link/networklinkurl.h"
#include "kestan/read/kmlparser.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <thread>

namespace vorrel::kestan {

namespace {

class FetchLog final : public FetchObserver {
public:
  void OnFetchChanged(const Event& event) override {
    events += QStringLiteral("%1%2:%3")
                  .arg(event.object ? "o" : "", event.link ? "l" : "")
                  .arg(event.state);
    if (dropped)
      dropped->reset();
  }

  QStringList events;
  RefPtr<SchemaObject>* dropped = nullptr;
};

} // namespace

class NetworkLinkTest : public KmlTest {
protected:
  RefPtr<NetworkLink> ReadLink(const char* content) {
    return Read<NetworkLink>(QStringLiteral("<NetworkLink>%1</NetworkLink>").arg(content));
  }
  RefPtr<NetworkLinkControl> ReadControl(const char* content) {
    return Read<NetworkLinkControl>(
        QStringLiteral("<NetworkLinkControl>%1</NetworkLinkControl>").arg(content));
  }
};

TEST_F(NetworkLinkTest, WhatWasGivenComesBack) {
  struct Case {
    const char* text;
    const char* written; // null when it's the text
  };
  const Case cases[] = {
      {"<NetworkLink><refreshVisibility>1</refreshVisibility><flyToView>1</flyToView>"
       "<Link><href>http://h/a</href></Link></NetworkLink>",
       nullptr},
      {"<NetworkLink><Url><href>http://h/a</href></Url></NetworkLink>", nullptr},
      {"<NetworkLink><flyToView>0</flyToView><x:u xmlns:x=\"y\">t</x:u></NetworkLink>",
       "<NetworkLink><x:u>t</x:u></NetworkLink>"},
      {"<NetworkLink><refreshPeriod>30</refreshPeriod><Link><href>http://h/a</href></Link></"
       "NetworkLink>",
       "<NetworkLink><Link><href>http://h/a</href><refreshMode>onInterval</refreshMode>"
       "<refreshInterval>30</refreshInterval></Link></NetworkLink>"},
      {"<NetworkLink><initialRefreshMode>onOpen</initialRefreshMode><rootMode>keep</rootMode>"
       "</NetworkLink>",
       "<NetworkLink></NetworkLink>"},
      {"<NetworkLinkControl><minRefreshPeriod>2.5</minRefreshPeriod><cookie>a=b</cookie>"
       "<message>m</message><linkName>n</linkName><linkSnippet maxLines=\"3\">s</linkSnippet>"
       "<linkDescription>d</linkDescription><expires>2020-01-02T03:04:05Z</expires>"
       "<maxSessionLength>60</maxSessionLength></NetworkLinkControl>",
       nullptr},
      {"<NetworkLinkControl><expires>soon</expires></NetworkLinkControl>", nullptr},
      {"<NetworkLinkControl></NetworkLinkControl>", nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const RefPtr<SchemaObject> object = ReadObject(QByteArray(c.text));
    ASSERT_TRUE(object);
    const QString written = Write(*object);
    const QString wanted = c.written ? c.written : c.text;
    const QString element = Element(written, object->getType());
    EXPECT_EQ(wanted, QString(element).remove('\n').remove('\t'));
    if (!element.contains("x:u")) {
      EXPECT_EQ(written, Write(*ReadObject(element)));
    }
    EXPECT_EQ(written, Write(*object->clone(true, nullptr)));
  }
}

TEST_F(NetworkLinkTest, WhatStoodInTheElementIsWrittenAndNothingThatWasFetched) {
  const auto document = Read<Document>(
      "<Document><Style id='s'><LineStyle><width>3</width></LineStyle></Style>"
      "<NetworkLink id='l'><name>n</name><Placemark><styleUrl>#s</styleUrl></Placemark>"
      "<Link><href>a.kml</href></Link><Folder><open>1</open></Folder></NetworkLink></Document>");
  ASSERT_TRUE(document);
  auto& link = static_cast<NetworkLink&>(*document->GetChild(0));
  const QString before = Write(*document);
  EXPECT_TRUE(before.contains("<width>3</width>")) << "a child's style";
  EXPECT_EQ(1, Element(before, "NetworkLink").count("<styleUrl>#s</styleUrl>"));
  EXPECT_EQ(1, Element(before, "NetworkLink").count("<open>1</open>"));
  EXPECT_EQ(before, Write(*ReadObject(before)));

  const RefPtr<AbstractFeature> fetched =
      Read<Placemark>("<Placemark><name>p</name><styleUrl>http://h/s.kml#s</styleUrl></Placemark>");
  EXPECT_TRUE(link.AddChild(*fetched));
  EXPECT_EQ(before, Write(*document));
  EXPECT_EQ(&link, fetched->GetParent());
  EXPECT_EQ(3, link.GetChildCount());
  {
    const RefPtr<SchemaObject> copy = document->clone(true, nullptr);
    EXPECT_EQ(before, Write(*copy));
    const auto& folder = static_cast<Document&>(*copy);
    EXPECT_EQ(3, static_cast<NetworkLink&>(*folder.GetChild(0)).GetChildCount());
  }
  link.SortChildrenByName();
  EXPECT_EQ(before.size(), Write(*document).size());
}

TEST_F(NetworkLinkTest, WhatAnUpdatePutsIntoALinkIsWritten) {
  const auto link = Read<NetworkLink>("<NetworkLink id='l'><Placemark id='p'/></NetworkLink>");
  const auto control =
      ReadControl("<Update><Create><NetworkLink "
                  "targetId='l'><Placemark><name>made</name></Placemark></NetworkLink>"
                  "</Create><Replace><Folder id='g' targetId='p'/></Replace></Update>");
  control->ApplyUpdates(nullptr);
  const QString written = Write(*link);
  EXPECT_TRUE(written.contains("<name>made</name>") && written.contains("<Folder id=\"g\">"))
      << written.toStdString();
}

TEST_F(NetworkLinkTest, WhatAWorkerHasReadIsTakenOver) {
  struct Case {
    const char* text;
    const char* children; // names, after a fetch of "own" and "old"
    const char* cookie;
    int state;
    const char* mode;
  };
  const Case cases[] = {
      {"<kml><NetworkLinkControl><cookie>c2</cookie></NetworkLinkControl><Folder><name>new</name>"
       "</Folder></kml>",
       "own new", "c2", net::kFetchSucceeded, "replace"},
      {"<Placemark><name>new</name></Placemark>", "own old new", "c1", net::kFetchSucceeded,
       "keep"},
      {"<NetworkLinkControl><cookie>c2</cookie></NetworkLinkControl>", "own old", "c2",
       net::kFetchSucceeded, "copy"},
      {"<Style/>", "own old", "c1", net::kFetchSucceeded, "prune"},
      {"<kml><NetworkLinkControl><cookie>c2</cookie></NetworkLinkControl><Folder>", "own old", "c1",
       net::kFetchParseFailed, "prune"},
      {"<kml><NetworkLinkControl><Update><targetHref>http://h/dir/doc.kml</targetHref><Delete>"
       "<NetworkLink targetId='l'/></Delete></Update></NetworkLinkControl><Folder><name>new</name>"
       "</Folder></kml>",
       "own new", "", net::kFetchSucceeded, "prune"},
  };
  WorkerThread thread;
  for (WorkerThread* worker : {static_cast<WorkerThread*>(nullptr), &thread}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.text);
      const auto fetch = [&](const char* text) {
        const RefPtr<KmlParserJob> job(
            new KmlParserJob(worker, "http://h/dir/a.kml", text, 2, nullptr, false));
        bool isDone = false;
        job->SetDone([&](KmlParserJob*) { isDone = true; });
        job->Start();
        while (!isDone)
          Pump::Run(0.0);
        return job;
      };
      RefPtr<SchemaObject> root =
          ReadAt("http://h/dir/doc.kml",
                 QStringLiteral(
                     "<Folder><NetworkLink id='l'><rootMode>%1</rootMode><Placemark><name>own"
                     "</name></Placemark><Link><href>a.kml</href></Link></NetworkLink></Folder>")
                     .arg(c.mode));
      auto& folder = static_cast<Folder&>(*root);
      const RefPtr<NetworkLink> link(static_cast<NetworkLink*>(folder.GetChild(0)));
      link->TakeFetched(*fetch("<kml><NetworkLinkControl><cookie>c1</cookie></NetworkLinkControl>"
                               "<Folder><name>old</name></Folder></kml>"));
      link->TakeFetched(*fetch(c.text));
      QStringList names;
      for (int i = 0; i < link->GetChildCount(); ++i)
        names += link->GetChild(i)->GetName();
      EXPECT_EQ(c.children, names.join(' '));
      EXPECT_EQ(c.cookie, link->GetControl()->GetCookie());
      EXPECT_EQ(c.state, link->GetFetchState());
      EXPECT_EQ(c.state == net::kFetchSucceeded, link->GetFetchErrorText().isEmpty());
      EXPECT_EQ(QByteArray(c.text).contains("Delete") ? 0 : 1, folder.GetChildCount());
    }
  }
}

TEST_F(NetworkLinkTest, ALinkThatLeadsBackIsntFollowed) {
  struct Case {
    const char* href;
    bool isEndless; // of the inner link
  };
  const Case cases[] = {{"doc.kml", true},    {"doc.kml#x", true},   {"./a.kml", true},
                        {"a.kml?q=1", false}, {"http://h/a", false}, {"", false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.href);
    const auto outer = Read<NetworkLink>(
        QStringLiteral("<NetworkLink><Link><href>a.kml</href></Link><Folder><NetworkLink><Link>"
                       "<href>%1</href></Link></NetworkLink></Folder></NetworkLink>")
            .arg(c.href));
    EXPECT_FALSE(outer->IsEndless());
    const auto& folder = static_cast<Folder&>(*outer->GetChild(0));
    EXPECT_EQ(c.isEndless, static_cast<NetworkLink*>(folder.GetChild(0))->IsEndless());
  }
  const QString open = "<NetworkLink><Link><href>http://h/%1</href></Link>";
  QString text;
  for (int i = 0; i < NetworkLink::kMaxLinkDepth + 2; ++i)
    text += open.arg(i);
  const auto deep = Read<NetworkLink>(
      text + QStringLiteral("</NetworkLink>").repeated(NetworkLink::kMaxLinkDepth + 2));
  mmvector<SchemaObject*> links;
  deep->FindBySchema(NetworkLink::GetClassSchema(), links);
  EXPECT_TRUE(static_cast<NetworkLink*>(links.back())->IsEndless());
  EXPECT_FALSE(static_cast<NetworkLink*>(links[NetworkLink::kMaxLinkDepth])->IsEndless());
}

TEST_F(NetworkLinkTest, TheActiveLinkIsTheNewForm) {
  const auto both = ReadLink("<Link><href>http://h/l</href></Link><Url><href>http://h/u</href>"
                             "</Url>");
  ASSERT_TRUE(both);
  EXPECT_EQ("http://h/l", both->GetAbsoluteUrl());
  EXPECT_FALSE(both->GetLink()->GetEmbedInKmz());
  both->SetHref("http://h/m");
  EXPECT_EQ("http://h/m", both->GetAbsoluteUrl());

  FieldLog log(*both);
  const auto url = Read<NetworkLink::Url>("<Url>http://h/v</Url>");
  both->SetLink(url.get());
  EXPECT_EQ("Url", log.take());
  EXPECT_EQ(url.get(), both->GetLink());
  both->SetLink(nullptr);
  EXPECT_EQ(nullptr, both->GetLink());
  EXPECT_TRUE(both->GetAbsoluteUrl().isNull());
  both->SetHref("http://h/x");
  both->refresh();
  EXPECT_EQ(nullptr, both->GetLink());
}

TEST_F(NetworkLinkTest, ARefreshPeriodHoldsWhereverItStands) {
  for (const char* order : {"%1%2", "%2%1"}) {
    for (const char* form : {"<Link>%1</Link>", "<Url>%1</Url>"}) {
      for (const int seconds : {30, 0}) {
        const QString given =
            QString(form).arg("<href>a</href><refreshMode>onExpire</refreshMode>");
        const QString text = QString(order).arg(
            QStringLiteral("<refreshPeriod>%1</refreshPeriod>").arg(seconds), given);
        SCOPED_TRACE(text.toStdString());
        const auto link = ReadLink(text.toUtf8());
        ASSERT_TRUE(link && link->GetLink());
        EXPECT_EQ(seconds ? AbstractLink::kOnInterval : AbstractLink::kOnChange,
                  link->GetLink()->GetRefreshMode());
        EXPECT_EQ(seconds ? 30.0F : 4.0F, link->GetLink()->GetRefreshInterval());
      }
    }
  }
  const auto link = ReadLink("<Link><href>a</href></Link>");
  FieldLog log(*link);
  link->SetRefreshPeriod(7);
  link->SetRefreshPeriod(7);
  EXPECT_EQ("refreshPeriod", log.take());
  EXPECT_EQ(7.0F, link->GetLink()->GetRefreshInterval());
}

TEST_F(NetworkLinkTest, AControlSteersTheLink) {
  const auto link = ReadLink("<name>a</name><snippet>old</snippet><description>o</description>"
                             "<Link><href>http://h/l?q#f</href></Link>");
  const auto control = ReadControl("<cookie>c=1</cookie><linkName>b</linkName>"
                                   "<linkSnippet maxLines=\"4\">new</linkSnippet>"
                                   "<linkDescription>d</linkDescription>"
                                   "<expires>2020-01-02T03:04:05Z</expires>");
  ASSERT_TRUE(link && control);
  const QString said = Write(*control);
  link->setControl(control.get());
  EXPECT_EQ("http://h/l?q&c=1#f", link->GetAbsoluteUrl());
  EXPECT_EQ("b", link->GetName());
  EXPECT_EQ("new", link->GetSnippet());
  EXPECT_EQ(4, link->GetMaxSnippetLines());
  EXPECT_EQ("d", link->GetDescription());
  EXPECT_NEAR(control->GetExpires().ToCurrentTime(), link->GetLink()->GetExpireTime(), 1.0);
  EXPECT_EQ(said, Write(*control)) << "what it held went to the link";

  const auto silent = ReadControl("<minRefreshPeriod>1</minRefreshPeriod>");
  const double expires = link->GetLink()->GetExpireTime();
  link->setControl(silent.get());
  EXPECT_EQ("http://h/l?q#f", link->GetAbsoluteUrl());
  EXPECT_EQ("b", link->GetName());
  EXPECT_EQ(expires, link->GetLink()->GetExpireTime());
  link->setControl(nullptr);
  EXPECT_EQ(nullptr, link->GetControl());

  link->SetHref("http://h/plain");
  link->setControl(control.get());
  EXPECT_EQ("http://h/plain?c=1", link->GetAbsoluteUrl());
  const auto lone = ReadLink("");
  lone->setControl(control.get());
  EXPECT_TRUE(lone->GetAbsoluteUrl().isNull());
  lone->SetLink(new Link(KmlId(), QString()));
  EXPECT_GT(lone->GetLink()->GetExpireTime(), 0.0);
}

TEST_F(NetworkLinkTest, FetchesAreReportedFromAnyThread) {
  const auto link = ReadLink("<Link><href>http://h/l</href></Link>");
  ASSERT_TRUE(link);
  FetchLog log;
  FieldLog fields(*link);
  link->SetFetchState(net::kFetchSucceeded, "t");
  link->SetFetchState(net::kFetchSucceeded, "t");
  link->SetFetchState(net::kFetchSucceeded, "other");
  EXPECT_EQ("fetchState fetchState", fields.take());
  EXPECT_EQ(QStringList({"ol:2", "ol:2"}), log.events);
  EXPECT_EQ("other", link->GetFetchErrorText());

  log.events.clear();
  std::thread([&] { FetchObserver::NotifyCancelled(link->GetLink()); }).join();
  EXPECT_TRUE(log.events.isEmpty());
  Pump::Run(1.0);
  EXPECT_EQ(QStringList({"l:12"}), log.events);
}

TEST_F(NetworkLinkTest, AnObserverMayEndTheLinkThatItHearsOf) {
  RefPtr<SchemaObject> link = ReadLink("<Link><href>http://h/l</href></Link>");
  FetchLog log;
  log.dropped = &link;
  static_cast<NetworkLink&>(*link).SetFetchState(net::kFetchParseFailed, "t");
  EXPECT_FALSE(link);
  EXPECT_EQ(1, log.events.size());
}

} // namespace vorrel::kestan
