#include "kestan/host/system.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryFile>

#include <array>
#include <atomic>
#include <clocale>
#include <mutex>

namespace vorrel {

namespace {

std::atomic<System::ThreadId> s_lastThread{System::kInvalidThreadId};
std::atomic<System::ThreadId> s_mainThread{System::kInvalidThreadId};
std::atomic<double> s_pixelScale{1.0};

/// The keys in use, by slot, and the number of keys made so far.
struct KeyTable {
  std::mutex mutex;
  std::array<System::ThreadKey, System::kMaxThreadKeys> keys{};
  System::ThreadKey made = 0;
};

KeyTable& Keys() {
  static KeyTable table;
  return table;
}

/// What the client said about its folders.
struct Folders {
  std::mutex mutex;
  QString install;
  QString resources;
};

Folders& ClientFolders() {
  static Folders folders;
  return folders;
}

QString ProgramFolder() {
  if (QCoreApplication::instance())
    return QCoreApplication::applicationDirPath();
  const QFileInfo program(QStringLiteral("/proc/self/exe"));
  return program.exists() ? QFileInfo(program.canonicalFilePath()).path() : QDir::currentPath();
}

} // namespace

std::uint32_t System::s_cur_frame = 0;

__thread System::Slot System::s_slots_[System::kMaxThreadKeys];

System::ThreadId System::GetCurrentThread() {
  thread_local const ThreadId id = ++s_lastThread;
  return id;
}

bool System::IsMainThread() { return s_mainThread.load() == GetCurrentThread(); }

void System::SetMainThread() { s_mainThread = GetCurrentThread(); }

System::ThreadKey System::CreateThreadKey() {
  KeyTable& table = Keys();
  const std::lock_guard<std::mutex> guard(table.mutex);
  for (unsigned slot = 0; slot < kMaxThreadKeys; ++slot) {
    if (table.keys[slot] != kInvalidThreadKey)
      continue;
    const ThreadKey key = ++table.made * kMaxThreadKeys + slot;
    table.keys[slot] = key;
    return key;
  }
  return kInvalidThreadKey;
}

void System::DeleteThreadKey(ThreadKey key) {
  KeyTable& table = Keys();
  const std::lock_guard<std::mutex> guard(table.mutex);
  ThreadKey& held = table.keys[SlotIndex(key)];
  if (held == key)
    held = kInvalidThreadKey;
  SetThreadStorage(key, nullptr);
}

void System::SetThreadStorage(ThreadKey key, void* value) {
  if (key != kInvalidThreadKey)
    s_slots_[SlotIndex(key)] = {value, key};
}

bool System::GetRadixSeparator(QString* separator) {
  const QString point = QString::fromLocal8Bit(std::localeconv()->decimal_point);
  if (separator)
    *separator = point;
  return point != QLatin1String(".");
}

LanguageCode System::GetCurrentLocale() { return LanguageCode(QLocale().bcp47Name()); }

QString System::GetInstallPath() {
  Folders& folders = ClientFolders();
  const std::lock_guard<std::mutex> guard(folders.mutex);
  if (folders.install.isEmpty())
    folders.install = ProgramFolder();
  return folders.install;
}

void System::SetInstallPath(const QString& path) {
  Folders& folders = ClientFolders();
  const std::lock_guard<std::mutex> guard(folders.mutex);
  folders.install = path;
}

QString System::GetResourceDirectory() {
  const QString byDefault = GetInstallPath() + QLatin1String("/resources");
  Folders& folders = ClientFolders();
  const std::lock_guard<std::mutex> guard(folders.mutex);
  return folders.resources.isEmpty() ? byDefault : folders.resources;
}

void System::SetResourceDirectory(const QString& path) {
  Folders& folders = ClientFolders();
  const std::lock_guard<std::mutex> guard(folders.mutex);
  folders.resources = path;
}

QString System::MakeTempFilePath(const QString& stem, const QString& extension) {
  QTemporaryFile file(QDir::tempPath() + QLatin1Char('/') + stem + QLatin1String("XXXXXX.") +
                      extension);
  file.setAutoRemove(false);
  return file.open() ? file.fileName() : QString();
}

double System::GetPixelScale() { return s_pixelScale; }

void System::SetPixelScale(double scale) { s_pixelScale = scale; }

} // namespace vorrel
