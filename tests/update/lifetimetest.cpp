#include "kestan/core/objectobserver.h"
#include "kestan/core/threadcontext.h"
#include "kestan/core/threadscope.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/pump.h"
#include "kestan/link/networklinkcontrol.h"
#include "tests/update/updatetest.h"

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace vorrel::kestan {

namespace {

/// Does something when its object changes, or goes.
class Act final : public ObjectObserver {
public:
  Act(SchemaObject& object, std::function<void()> act)
      : ObjectObserver(object), act_(std::move(act)) {}

  void OnFieldChanged(const FieldChangedEvent&) override { Run(); }
  void OnPreDelete(const PreDeleteEvent&) override { Run(); }

private:
  void Run() {
    // Once, and from a place that may go meanwhile.
    if (const std::function<void()> act = std::exchange(act_, nullptr))
      act();
  }

  std::function<void()> act_;
};

} // namespace

/// A folder "f" with the placemarks "a", "b" and "c", and an update that renames all of them.
class UpdateLifetimeTest : public UpdateTest {
public:
  UpdateLifetimeTest() { Begin(); }
  void Begin() {
    folder = Read<Folder>("<Folder id=\"f\"><Placemark id=\"a\"/><Placemark id=\"b\"/>"
                          "<Placemark id=\"c\"/></Folder>");
    update = MakeUpdate(
        "<Change><Placemark "
        "targetId=\"a\"><name>x</name><address>x</address></Placemark><Placemark "
        "targetId=\"b\"><name>x</name></Placemark><Placemark targetId=\"c\"><name>x</name>"
        "</Placemark><Placemark targetId=\"a\"><phoneNumber>1</phoneNumber></Placemark></Change>");
    update->SetKeepEdits(true);
  }
  AbstractFeature& Child(int index) { return *folder->GetChild(index); }
  QString Names() {
    QString names;
    for (int i = 0; i < folder->GetChildCount(); ++i)
      names += Child(i).GetName() + ',';
    return names;
  }

  RefPtr<Folder> folder;
  RefPtr<Update> update;
};

TEST_F(UpdateLifetimeTest, EditsGoWithTheirObjectsAndWithTheirUpdate) {
  update->CreateEdits(nullptr);
  EXPECT_EQ(5, update->GetEditCount());
  folder->RemChild(0);
  EXPECT_EQ(2, update->GetEditCount());
  update->ApplyEdits(1.0F);
  EXPECT_EQ("x,x,", Names());
  update.reset();
  EXPECT_FALSE(Child(0).HasObservers());
}

TEST_F(UpdateLifetimeTest, WhoeverHearsOfAnEditMayEndAnything) {
  struct Case {
    const char* what;
    std::function<void(UpdateLifetimeTest&)> act;
    const char* names;
  };
  const Case cases[] = {
      {"the object", [](auto& test) { test.folder->RemChild(0); }, "x,x,"},
      {"the next object", [](auto& test) { test.folder->RemChild(1); }, "x,x,"},
      {"all objects",
       [](auto& test) { test.folder = RefPtr<Folder>(new Folder(KmlId(), QString())); }, ""},
      {"the update", [](auto& test) { test.update.reset(); }, "x,,,"},
      {"the edits", [](auto& test) { test.update->DeleteAllEdits(); }, "x,,,"},
      {"their use", [](auto& test) { test.update->ApplyEdits(0.0F); }, ",x,x,"},
      {"more edits", [](auto& test) { test.update->CreateEdits(nullptr); }, "x,x,x,"},
      {"the only use",
       [](auto& test) {
         test.update->SetKeepEdits(false);
         test.update->ApplyEdits(1.0F);
       },
       "x,x,x,"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Begin();
    update->CreateEdits(nullptr);
    Act act(Child(0), [&] { c.act(*this); });
    Update* const used = update.get();
    used->ApplyEdits(1.0F);
    EXPECT_EQ(c.names, Names());
  }
}

TEST_F(UpdateLifetimeTest, WhoeverHearsOfARemovalMayEndAnything) {
  const auto content = [](const char* tail) {
    return QStringLiteral("<Delete><Placemark targetId=\"a\"/></Delete>%1")
        .arg(QLatin1String(tail));
  };
  for (const char* const tail :
       {"", "<Create><Folder targetId=\"f\"><Placemark id=\"n\" targetIndex=\"0\"/><Placemark "
            "id=\"m\"/></Folder></Create><Delete><Placemark targetId=\"b\"/></Delete>"}) {
    for (const int what : {0, 1, 2}) {
      SCOPED_TRACE(what);
      Begin();
      update = MakeUpdate(content(tail));
      Act act(Child(0), [&] {
        if (what == 0)
          folder.reset();
        else if (what == 1)
          update.reset();
        else
          while (folder->GetChildCount() > 0)
            folder->RemChild(0);
      });
      update->Apply(nullptr, 1.0F);
      TakeReports();
    }
  }
}

TEST_F(UpdateLifetimeTest, AnUpdateMayRemoveWhatItIsApplying) {
  // The control hangs in the tree that it removes.
  const auto owner = ReadAt("http://example.com/dir/doc.kml", "<Folder id=\"top\"/>");
  const auto root = ReadAt("http://example.com/dir/doc.kml",
                           "<NetworkLinkControl id=\"n\"><Update><Delete><Folder targetId=\"f\"/>"
                           "</Delete></Update><Update><Change><Placemark targetId=\"a\"><name>x"
                           "</name></Placemark></Change></Update></NetworkLinkControl>");
  RefPtr<NetworkLinkControl> control(static_cast<NetworkLinkControl*>(root.get()));
  const RefPtr<Folder> top(static_cast<Folder*>(owner.get()));
  top->AddChild(*folder);
  folder.reset();
  NetworkLinkControl* const used = control.get();
  Act act(*top, [&] {
    control.reset();
    const_cast<RefPtr<SchemaObject>&>(root).reset();
  });
  used->ApplyUpdates(nullptr);
  EXPECT_FALSE(control);
  EXPECT_EQ(0, top->GetChildCount());
  EXPECT_EQ(QStringList("Could not find <targetId> a"), TakeReports());
}

TEST_F(UpdateLifetimeTest, AWorkerAppliesAnUpdateInThePlaceOfTheMainThread) {
  for (const bool comes : {false, true}) {
    SCOPED_TRACE(comes);
    update.reset();
    std::atomic<bool> isDone{false};
    std::thread worker([&] {
      ThreadScope scope;
      update = MakeUpdate(
          "<Create><Folder targetId=\"f\"><Placemark id=\"n\"><name>x</name></Placemark></Folder>"
          "</Create><Delete><Placemark targetId=\"a\"/></Delete><Change><Placemark targetId=\"b\">"
          "<name>y</name></Placemark></Change>");
      update->Apply(&scope, 1.0F);
      EXPECT_NE(ThreadContext::GetMain(), ThreadContext::GetCurrent());
      isDone = true;
    });
    while (!isDone) {
      if (comes)
        Pump::Run(0.001);
      else
        Pump::Clear();
    }
    worker.join();
    while (Pump::Run(0.001) == 0.0) {
    }
    EXPECT_EQ(comes ? "y,,x," : ",,,", Names());
    EXPECT_EQ(0, update->GetEditCount());
    EXPECT_EQ(comes ? QStringList()
                    : QStringList("The update can't be applied: the main thread doesn't come"),
              TakeReports());
  }
}

} // namespace vorrel::kestan
