#include "kestan/host/referent.h"

namespace vorrel {

AtomicReferent::~AtomicReferent() = default;

void AtomicReferent::orphaned() { delete this; }

void AtomicReferent::ref() const { count_.fetch_add(1, std::memory_order_relaxed); }

void AtomicReferent::unref() const {
  if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1)
    const_cast<AtomicReferent*>(this)->orphaned();
}

Referent::~Referent() = default;

void Referent::orphaned() { delete this; }

void Referent::ref() const { ++count_; }

void Referent::unref() const {
  if (--count_ == 0)
    const_cast<Referent*>(this)->orphaned();
}

} // namespace vorrel
