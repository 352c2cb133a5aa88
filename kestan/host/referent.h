#pragma once

#include "kestan/host/export.h"

#include <atomic>
#include <cstdint>

namespace vorrel {

/// Base of objects with a reference count that any thread may change. The count starts at 0; the
/// first `RefPtr` makes it 1, and the object goes when the last one lets go.
///
/// The count lies right behind the table pointer, so that a derived class can put a small member
/// into the four bytes that follow.
class KESTAN_EXPORT AtomicReferent {
public:
  AtomicReferent(const AtomicReferent&) = delete;
  AtomicReferent& operator=(const AtomicReferent&) = delete;
  virtual ~AtomicReferent();

protected:
  AtomicReferent() = default;
  /// Called once, by the `unref` that brings the count to 0. Deletes the object.
  virtual void orphaned();

public:
  virtual void ref() const;
  virtual void unref() const;
  int GetRefCount() const { return count_.load(std::memory_order_acquire); }

protected:
  /// Lowers the count without destroying anything, even at 0.
  void UnrefWithoutDelete() const { count_.fetch_sub(1, std::memory_order_acq_rel); }

private:
  mutable std::atomic<std::int32_t> count_{0};
};

/// The same for objects that one thread uses.
class KESTAN_EXPORT Referent {
public:
  Referent(const Referent&) = delete;
  Referent& operator=(const Referent&) = delete;
  virtual ~Referent();

protected:
  Referent() = default;
  virtual void orphaned();

public:
  virtual void ref() const;
  virtual void unref() const;
  int GetRefCount() const { return count_; }

private:
  mutable std::int32_t count_ = 0;
};

} // namespace vorrel
