#pragma once

namespace vorrel {
class IJobContinuator;
class ResourceManager;
} // namespace vorrel

namespace vorrel::kestan {

class SchemaObject;
class ThreadContext;

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

  /// A worker's objects have been moved to the main thread: moves what the part has beside them,
  /// and goes on with it there. True when the continuator stopped it; it's called again then.
  virtual bool MergeContext(ThreadContext&, const IJobContinuator&) { return false; }
  /// An object dies that waits for another one (`kBitHasLoadObserver`).
  virtual void EndWait(SchemaObject&) {}

  /// Has `operation(LibraryPart&)` done by every part.
  template <class Operation> static void ForEach(Operation operation) {
    for (LibraryPart* part = s_first; part; part = part->next_)
      operation(*part);
  }

  /// Asks one part after the other until the answer of `operation(LibraryPart&)` is true.
  template <class Operation> static bool AnyOf(Operation operation) {
    for (LibraryPart* part = s_first; part; part = part->next_) {
      if (operation(*part))
        return true;
    }
    return false;
  }

protected:
  ~LibraryPart() = default;

private:
  LibraryPart* next_;

  static LibraryPart* s_first;
};

} // namespace vorrel::kestan
