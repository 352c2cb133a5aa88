#pragma once

namespace vorrel {
class ResourceManager;
}

namespace vorrel::kestan {

/// What a folder above this one does when the library starts and stops. Parts are static objects,
/// so that all of them are known before the library starts; none may rely on another one's having
/// had its turn.
class LibraryPart {
public:
  LibraryPart();
  LibraryPart(const LibraryPart&) = delete;
  LibraryPart& operator=(const LibraryPart&) = delete;

  /// Ahead of all else, when there's neither a context nor a schema; and behind all else.
  virtual void Start() {}
  virtual void Stop() {}
  /// Loaders that come before those which every client has.
  virtual void AddResourceLoaders(ResourceManager&) {}
  /// Objects that all threads share. They need the schemas.
  virtual void MakeSharedObjects() {}
  virtual void DropSharedObjects() {}
  /// Everything is there.
  virtual void ObserveCreation() {}

  /// Has `operation(LibraryPart&)` done by every part.
  template <class Operation> static void ForEach(Operation operation) {
    for (LibraryPart* part = s_first; part; part = part->next_)
      operation(*part);
  }

protected:
  ~LibraryPart() = default;

private:
  LibraryPart* next_;

  static LibraryPart* s_first;
};

} // namespace vorrel::kestan
