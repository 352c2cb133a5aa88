#include "kestan/read/typedloadobserver.h"

#include "kestan/core/threadscope.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/host/pump.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <functional>
#include <memory>
#include <thread>

namespace vorrel::kestan {

namespace {

constexpr char kStyles[] = "http://example.com/dir/styles.kml";

} // namespace

class LoadObserverTest : public KmlTest {
protected:
  RefPtr<Placemark> MakeReference(const QString& styleUrl) {
    return Read<Placemark>(
        QStringLiteral("<Placemark><styleUrl>%1</styleUrl></Placemark>").arg(styleUrl));
  }
  static RefPtr<Style> MakeStyle(const char* id, const QString& url = QLatin1String(kStyles)) {
    return RefPtr<Style>(new Style(KmlId(QLatin1String(id), url), QString()));
  }
  static bool IsWaiting(const Placemark& placemark) {
    return LoadObserver::Find(placemark, AbstractFeatureSchema::GetSingleton().styleUrl) != nullptr;
  }
  static StyleSelector* StyleOf(const Placemark& placemark) {
    return placemark.GetReferencedStyleSelector();
  }

  /// Runs `build` as a worker does, and merges what it made.
  static void BuildOnWorker(const std::function<void()>& build) {
    std::thread([&] {
      const ThreadScope scope;
      build();
    }).join();
    RunPump();
  }
  static void RunPump() {
    while (Pump::Run(0) == 0.0) {
    }
  }
};

TEST_F(LoadObserverTest, ReferencesThatLeadNowhereDoNotWait) {
  FakeLoader loader;
  const auto builtIn = MakeReference("root://styles#default");
  EXPECT_FALSE(IsWaiting(*builtIn));
  EXPECT_FALSE(builtIn->GetBit(kBitLoadFailed));
  EXPECT_TRUE(StyleOf(*builtIn));
  const auto noId = MakeReference("http://h/a.kml#");
  EXPECT_FALSE(IsWaiting(*noId));
  EXPECT_TRUE(noId->GetBit(kBitLoadFailed));
  noId->SetStyleUrl(QString());
  EXPECT_FALSE(noId->GetBit(kBitLoadFailed));
  EXPECT_FALSE(noId->clone(true, nullptr)->GetBit(kBitLoadFailed));
  EXPECT_TRUE(loader.requested.isEmpty());
}

TEST_F(LoadObserverTest, AnotherDocumentIsAskedForOnceAndDeliversOnAnyThread) {
  auto former = std::make_unique<FakeLoader>();
  FakeLoader loader; // takes its place
  former.reset();
  const auto placemark = MakeReference("styles.kml#s");
  AbstractFeatureSchema::GetSingleton().styleUrl.SetTypedObject(*placemark, "styles.kml#s");
  EXPECT_EQ(QStringList(kStyles), loader.requested) << "once";
  EXPECT_TRUE(IsWaiting(*placemark));
  EXPECT_FALSE(placemark->GetBit(kBitLoadFailed));

  const auto& field = AbstractFeatureSchema::GetSingleton().styleUrl;
  const LoadObserver* observer = LoadObserver::Find(*placemark, field);
  EXPECT_EQ(KmlId("s", kStyles), observer->GetTarget());

  RefPtr<Style> style;
  BuildOnWorker([&] {
    const auto other = MakeStyle("t");
    style = MakeStyle("s");
  });
  EXPECT_EQ(style.get(), StyleOf(*placemark));
  EXPECT_FALSE(IsWaiting(*placemark));
}

TEST_F(LoadObserverTest, ADocumentThatEndsWithoutTheTargetFailsTheReferenceOnAnyThread) {
  FakeLoader loader;
  const auto first = MakeReference("styles.kml#s");
  const auto second = MakeReference("other.kml#s");
  loader.ended += kStyles;
  BuildOnWorker([] {});
  EXPECT_TRUE(first->GetBit(kBitLoadFailed));
  EXPECT_FALSE(IsWaiting(*first));
  EXPECT_FALSE(second->GetBit(kBitLoadFailed));
  EXPECT_TRUE(IsWaiting(*second));
}

// Without worker threads too, and whenever the loader comes to know.
TEST_F(LoadObserverTest, TheMainThreadLearnsByThePumpThatATargetWillNotCome) {
  FakeLoader loader;
  const auto first = MakeReference("styles.kml#s");
  const auto other = MakeReference("other.kml#s");
  RunPump();
  EXPECT_TRUE(IsWaiting(*first));
  ReadAt(kStyles, "<Document/>");
  loader.ended += kStyles; // behind the reading
  RunPump();
  EXPECT_FALSE(IsWaiting(*first));
  EXPECT_TRUE(first->GetBit(kBitLoadFailed));
  EXPECT_FALSE(other->GetBit(kBitLoadFailed));

  loader.requested.clear();
  const auto late = MakeReference("styles.kml#t");
  EXPECT_TRUE(loader.requested.isEmpty()) << "it was loaded";
  RunPump();
  EXPECT_TRUE(late->GetBit(kBitLoadFailed));

  loader.ended += "http://example.com/dir/other.kml"; // a failed load
  LoadObserver::UpdateAllLater();
  LoadObserver::UpdateAllLater();
  EXPECT_FALSE(other->GetBit(kBitLoadFailed)) << "not before the pump runs";
  RunPump();
  EXPECT_TRUE(other->GetBit(kBitLoadFailed));
}

TEST_F(LoadObserverTest, WhatAThreadWaitsForIsFoundAtTheMerge) {
  const auto style = MakeStyle("s");
  RefPtr<Placemark> found;
  RefPtr<Placemark> waiting;
  BuildOnWorker([&] {
    found = MakeReference("styles.kml#s");
    waiting = MakeReference("styles.kml#later");
  });
  EXPECT_EQ(style.get(), StyleOf(*found));
  EXPECT_TRUE(IsWaiting(*waiting));
  const auto later = MakeStyle("later");
  EXPECT_EQ(later.get(), StyleOf(*waiting));
}

TEST_F(LoadObserverTest, AnotherUrlWaitsForItsOwnTargetOnly) {
  const auto placemark = MakeReference("styles.kml#a");
  placemark->SetStyleUrl("styles.kml#b");
  const auto a = MakeStyle("a");
  EXPECT_FALSE(StyleOf(*placemark));
  const auto b = MakeStyle("b");
  EXPECT_EQ(b.get(), StyleOf(*placemark));

  // Bound to another style by hand, it doesn't turn back.
  placemark->SetStyleUrl("styles.kml#c");
  placemark->SetReferencedStyleSelector(a.get());
  const auto c = MakeStyle("c");
  EXPECT_EQ(a.get(), StyleOf(*placemark));
  EXPECT_FALSE(IsWaiting(*placemark));
}

TEST_F(LoadObserverTest, AnotherClassIsNotTheTarget) {
  const RefPtr<Placemark> other(new Placemark(KmlId("s", kStyles), QString()));
  const auto placemark = MakeReference("styles.kml#s");
  EXPECT_FALSE(StyleOf(*placemark));
  EXPECT_TRUE(IsWaiting(*placemark));
}

TEST_F(LoadObserverTest, AReferenceMayChangeWhileItIsResolved) {
  auto first = MakeReference("styles.kml#s");
  auto second = MakeReference("styles.kml#s");
  const auto third = MakeReference("styles.kml#s");
  const OnChange chain(third.get(), [&](const Field&) { second.reset(); }); // told first
  const auto style = MakeStyle("s");
  EXPECT_FALSE(second);
  EXPECT_EQ(style.get(), StyleOf(*first));
  EXPECT_EQ(style.get(), StyleOf(*third));
}

} // namespace vorrel::kestan
