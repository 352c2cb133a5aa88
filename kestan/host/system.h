#pragma once

#include "kestan/host/export.h"
#include "kestan/host/languagecode.h"

#include <QString>

#include <cstdint>

namespace vorrel {

/// Answers about the process, its threads and its platform.
class KESTAN_EXPORT System {
public:
  /// Number of a thread, given at its first call and never used again.
  using ThreadId = std::uint64_t;
  static constexpr ThreadId kInvalidThreadId = 0;

  static ThreadId GetCurrentThread();
  /// True on the thread that called `SetMainThread`.
  static bool IsMainThread();
  /// Makes the calling thread the main one. The library's start does this.
  static void SetMainThread();

  /// Name of a slot that every thread has for itself. 0 is no key.
  using ThreadKey = std::uint32_t;
  static constexpr ThreadKey kInvalidThreadKey = 0;
  static constexpr unsigned kMaxThreadKeys = 16;

  /// A new key, under which all threads hold null; `kInvalidThreadKey` when all are in use.
  static ThreadKey CreateThreadKey();
  /// Gives the key back. What threads stored under it is forgotten, not deleted.
  static void DeleteThreadKey(ThreadKey key);
  static void* GetThreadStorage(ThreadKey key);
  /// Nothing is stored under a key that isn't one.
  static void SetThreadStorage(ThreadKey key, void* value);

  /// Answers whether the decimal separator of the process's C locale is something other than a
  /// point, and that separator. The library's own number formatting doesn't depend on it.
  static bool GetRadixSeparator(QString* separator);

  /// The language and country of the user.
  static LanguageCode GetCurrentLocale();
  /// The folder of the running program, and the folder of its data files; without a "/" behind.
  /// A client that is installed in another way says so once, before it starts the library.
  static QString GetInstallPath();
  static void SetInstallPath(const QString& path);
  static QString GetResourceDirectory();
  static void SetResourceDirectory(const QString& path);

  /// Creates an empty file of a new name in the folder for temporary files, and answers its path;
  /// an empty text when that fails. The caller removes it.
  static QString MakeTempFilePath(const QString& stem, const QString& extension);

  /// Number of the frame that is being drawn. The client counts.
  static std::uint32_t s_cur_frame;

  /// Device pixels for one pixel of a layout, 1 unless the client says otherwise.
  static double GetPixelScale();
  static void SetPixelScale(double scale);

private:
  /// A value counts only while its key is the one asked for, so that a thread never sees what it
  /// stored under an earlier key of the same slot.
  struct Slot {
    void* value;
    ThreadKey key;
  };
  static constexpr unsigned SlotIndex(ThreadKey key) { return key % kMaxThreadKeys; }

  // A plain array at a fixed offset from the thread pointer: no call is needed to reach it.
  static __thread Slot s_slots_[kMaxThreadKeys] __attribute__((tls_model("initial-exec")));
};

inline void* System::GetThreadStorage(ThreadKey key) {
  const Slot& slot = s_slots_[SlotIndex(key)];
  return slot.key == key ? slot.value : nullptr;
}

} // namespace vorrel
