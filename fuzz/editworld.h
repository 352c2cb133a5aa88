#pragma once

#include "kestan/core/creationobserver.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/watcher.h"
#include "kestan/read/loadobserverloader.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

namespace fuzz {

/// Objects that a client holds, observers that the client has, and what it does to them, byte by
/// byte. Observers take their deeds from the same bytes.
class EditWorld {
public:
  EditWorld(const std::uint8_t* data, std::size_t size);
  EditWorld(const EditWorld&) = delete;
  EditWorld& operator=(const EditWorld&) = delete;
  ~EditWorld();

  /// Edits until the bytes end. Ends the program where a tree isn't as it should be.
  void Run();

private:
  using Object = vorrel::kestan::SchemaObject;
  using Held = vorrel::RefPtr<Object>;

  class Observer;
  class CreationObserver;
  class Loader;
  friend struct ClassOperations;

  unsigned Next();
  unsigned Next(std::size_t count) { return count ? Next() % static_cast<unsigned>(count) : 0; }
  int NextIndex() { return static_cast<int>(Next(7)) - 1; }
  QString NextText();
  Held Make();
  /// Any object that the client can get at now, or null.
  Object* Pick();
  /// The same of a class.
  Object* Pick(const vorrel::kestan::Schema& schema);
  template <class T> T* Pick() { return static_cast<T*>(Pick(T::GetClassSchema())); }
  const vorrel::kestan::Field* PickField(const Object& object);

  void React();
  /// The same for who hears of `object`, and may keep it.
  void React(Object& object);
  void Edit();
  void EditField(Object& object);
  void TakeText(Object& object, const vorrel::kestan::Field& field);
  void KeepMore(Object& object, const vorrel::kestan::Field& field);
  void EditArray(Object& object, const vorrel::kestan::Field& field);
  void EditObject(Object& object);
  void Watch();
  void Check();
  void CheckTree(const Object& object, std::unordered_set<const Object*>& seen);
  static bool OnPreDelete(vorrel::kestan::HandlerEvent& event);

  const std::uint8_t* at_;
  const std::uint8_t* const end_;
  int depth_ = 0; ///< Edits that run inside of each other.
  std::vector<Held> held_;
  std::vector<Held> dead_; ///< References that were taken while their objects died.
  std::vector<std::unique_ptr<Observer>> observers_;
  std::vector<std::unique_ptr<vorrel::kestan::Watcher<Object>>> watchers_;
  std::unique_ptr<CreationObserver> creationObserver_;
  std::unique_ptr<Loader> loader_;

  static EditWorld* s_present_;
};

} // namespace fuzz
