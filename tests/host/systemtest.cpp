#include "kestan/host/system.h"
#include "kestan/host/file.h"
#include "kestan/host/resourcedictionary.h"
#include "kestan/host/resources.h"
#include "kestan/host/semaphore.h"
#include "kestan/host/spinlock.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <mutex>
#include <set>
#include <thread>
#include <vector>

using namespace vorrel;

TEST(SystemTest, EachThreadHasItsOwnStorageUnderAKey) {
  Semaphore stored;
  Semaphore renewed;
  System::ThreadKey key = System::CreateThreadKey();
  int here = 0;
  System::SetThreadStorage(key, &here);
  std::thread other([&] {
    EXPECT_EQ(nullptr, System::GetThreadStorage(key));
    int value = 0;
    System::SetThreadStorage(key, &value);
    stored.post();
    renewed.wait();
    EXPECT_EQ(nullptr, System::GetThreadStorage(key));
  });
  stored.wait();
  EXPECT_EQ(&here, System::GetThreadStorage(key));
  System::DeleteThreadKey(key);
  key = System::CreateThreadKey();
  renewed.post();
  other.join();

  // Keys run out, and come back.
  std::set<System::ThreadKey> keys;
  for (;;) {
    const System::ThreadKey more = System::CreateThreadKey();
    if (more == System::kInvalidThreadKey)
      break;
    EXPECT_TRUE(keys.insert(more).second);
  }
  EXPECT_LT(keys.size(), std::size_t(System::kMaxThreadKeys));
  for (const System::ThreadKey used : keys)
    System::DeleteThreadKey(used);
  System::DeleteThreadKey(key);
}

TEST(SpinLockTest, KeepsThreadsApart) {
  SpinLock lock;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 20000; ++j) {
        const std::lock_guard<SpinLock> guard(lock);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(80000, count);
}

TEST(FileTest, MovesOverAnExistingFileAndAcrossFileSystems) {
  const QTemporaryDir folder;
  const auto put = [](const QString& path, const char* text) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
  };
  const auto content = [](const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  const QString to = folder.filePath("to \xC3\xA4");
  put(to, "old");
  QString temporary = System::MakeTempFilePath("~QZ", "kmz");
  EXPECT_TRUE(temporary.endsWith(".kmz"));
  EXPECT_TRUE(QFileInfo(temporary).fileName().startsWith("~QZ"));
  put(temporary, "new");
  {
    const file::FileDeleter guard(temporary);
    EXPECT_TRUE(file::move(temporary, to));
  }
  EXPECT_EQ("new", content(to));
  EXPECT_FALSE(QFile::exists(temporary));

  if (QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
    const QTemporaryDir memory(QStringLiteral("/dev/shm/movetest"));
    put(memory.filePath("from"), "far");
    EXPECT_TRUE(file::move(memory.filePath("from"), to));
    EXPECT_EQ("far", content(to));
    EXPECT_FALSE(QFile::exists(memory.filePath("from")));
  }
  EXPECT_FALSE(file::move(folder.filePath("none"), to));
  put(temporary, "x");
  { const file::FileDeleter guard(temporary); }
  EXPECT_FALSE(QFile::exists(temporary));
}

TEST(ResourceTest, TheFirstLoaderThatFindsAResourceAnswers) {
  const QTemporaryDir folder;
  System::SetResourceDirectory(folder.path());
  QFile shape(folder.filePath("shape.png"));
  ASSERT_TRUE(shape.open(QIODevice::WriteOnly));
  ResourceManager manager;
  manager.AddLoader(std::make_unique<QtResourceLoader>());
  manager.AddLoader(std::make_unique<FileResourceLoader>());
  const ResourceRecord found = manager.Find("shape", ResourceManager::kResourceTypePng);
  EXPECT_TRUE(found.found);
  EXPECT_EQ(folder.filePath("shape.png"), found.text);
  EXPECT_FALSE(manager.Find("shape", "jpg").found);
  EXPECT_FALSE(manager.Find("../shape", "png").found);
  EXPECT_FALSE(QResourceRegistrar("localshapes").IsRegistered());
  System::SetResourceDirectory(QString());
}

TEST(ResourceDictionaryTest, SimplifiesForOneObjectAndIsWrittenInOrder) {
  ResourceDictionary all;
  all.Insert("b.png", "m1", "files/b.png");
  all.Insert("a.png", "", "files/a.png");
  all.Insert("a.png", "m1", "files/own\ta.png");
  all.Insert("a.png", "m2", "files/other.png");
  const ResourceDictionary own = all.GetSimplifiedCopy("m1");
  EXPECT_EQ(2U, own.GetEntries().size());
  ASSERT_TRUE(own.Find("a.png", QString()));
  EXPECT_EQ("files/own\ta.png", *own.Find("a.png", QString()));
  EXPECT_EQ("files/own%09a.png\ta.png\t\nfiles/b.png\tb.png\t\n", own.ExportToString());
  EXPECT_TRUE(all.Erase("b.png", "m1"));
  EXPECT_FALSE(all.Erase("b.png", "m1"));
}
