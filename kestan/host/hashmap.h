#pragma once

#include "kestan/host/bytehash.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vorrel {

/// How a `HashMap` sees the key of its values. Specialise it, or give the map another one, for
/// values that don't hold their key in one piece.
template <class K, class V> struct HashMapTraits {
  static bool Equals(const V& value, const K& key) { return value.GetKey() == key; }
  static bool Equals(const V& a, const V& b) { return a.GetKey() == b.GetKey(); }
  static std::uint32_t Hash(const V& value) { return hash<K>()(value.GetKey()); }
};

template <class K, class V, class Traits = HashMapTraits<K, V>> class HashMap;

/// Base of the values of a `HashMap`: the link lies inside the value, so that the map allocates
/// nothing for it. A value is in one map at most, and leaves it before it ends: `~HashMapEntry`
/// can't do that, since the value's key is gone by then.
///
/// The hash value stands last, where a small member of the derived class can follow it.
template <class K, class V, class Traits = HashMapTraits<K, V>> class HashMapEntry {
public:
  HashMapEntry(const HashMapEntry&) = delete;
  HashMapEntry& operator=(const HashMapEntry&) = delete;

  bool IsInMap() const { return map_ != nullptr; }
  HashMap<K, V, Traits>* GetMap() const { return map_; }
  /// The hash value under which the entry was inserted last.
  std::uint32_t GetHash() const { return hash_; }

protected:
  HashMapEntry() = default;
  ~HashMapEntry() = default;

  /// A link for the value's own use, while it's in no map.
  V* GetSpareLink() const { return static_cast<V*>(next_); }
  void SetSpareLink(V* value) { next_ = value; }

private:
  friend class HashMap<K, V, Traits>;

  HashMapEntry* next_ = nullptr;
  HashMapEntry* prev_ = nullptr;
  HashMap<K, V, Traits>* map_ = nullptr;
  std::uint32_t hash_ = 0;
};

/// Chained hash table over values that derive from `HashMapEntry<K, V>`. It owns no value.
///
/// The number of buckets is a power of two, never below the minimum; it doubles when there are
/// more values than buckets, and halves when less than a quarter are in use. An empty map holds no
/// memory. Lookups compare the cached hash value before the key; and since values lie anywhere in
/// memory, a byte a bucket tells most keys that aren't there without a look at any of them. Not
/// safe across threads, lookups included.
///
/// Keys that were made to share a bucket turn it into a list. The map counts what that costs, so
/// that who takes keys from strangers can set a limit.
template <class K, class V, class Traits> class HashMap {
public:
  using Entry = HashMapEntry<K, V, Traits>;

  explicit HashMap(unsigned log2Minimum) : minimum_(std::size_t(1) << log2Minimum) {}
  ~HashMap() { clear(); }
  HashMap(const HashMap&) = delete;
  HashMap& operator=(const HashMap&) = delete;

  std::size_t count() const { return count_; }
  std::size_t GetBucketCount() const { return buckets_ ? size_ : 0; }
  /// The values that lookups so far have met beyond the first `kLongChain` of a chain. 0 for keys
  /// that nobody has made up for it.
  std::uint64_t GetExcessSteps() const { return excessSteps_; }

  V* find(const K& key) const { return count_ ? find(hash<K>()(key), key) : nullptr; }

  /// The value with this key, whose hash value the caller knows; null when there is none.
  V* find(std::uint32_t hashValue, const K& key) const {
    return Find(hashValue, [&key](const V& value) { return Traits::Equals(value, key); });
  }

  /// Asks for the memory in which the next look at this hash value begins.
  void Prefetch(std::uint32_t hashValue) const {
    if (!buckets_)
      return;
    __builtin_prefetch(&Kinds(hashValue), 1);
    __builtin_prefetch(&Bucket(hashValue), 1);
  }

  void insert(V& value) { insert(value, Traits::Hash(value)); }

  /// Enters a value that is in no map. An equal key may be there already: the newest is found.
  void insert(V& value, std::uint32_t hashValue) {
    Entry& entry = value;
    entry.hash_ = hashValue;
    if (!buckets_)
      Resize(minimum_);
    Link(entry);
    if (count_ > size_)
      Resize(size_ * 2);
  }

  /// Takes a value out of this map; one that isn't in it stays as it is.
  void erase(V& value) {
    if (static_cast<Entry&>(value).map_ != this)
      return;
    Unlink(value);
    Shrink();
  }

  /// Moves all values of `source` here with the hash values that they have. Of two with an equal
  /// key, `replace` says whether the one here leaves, or the newcomer ends up in no map.
  void merge(HashMap& source, bool replace) {
    if (&source == this || source.count_ == 0)
      return;
    Reserve(count_ + source.count_);
    source.forEach([&](V& value) {
      source.Unlink(value);
      Entry& entry = value;
      V* const equal =
          Find(entry.hash_, [&value](const V& other) { return Traits::Equals(other, value); });
      if (equal && !replace)
        return;
      if (equal)
        Unlink(*equal);
      Link(entry);
    });
    source.Shrink();
    Shrink();
  }

  /// Takes all values out.
  void clear() {
    forEach([this](V& value) { Unlink(value); });
    Shrink();
  }

  /// Calls `handler(V&)` for each value, in no particular order. The handler must leave the map
  /// as it is.
  template <class Handler> void forEach(Handler&& handler) const {
    if (!buckets_)
      return;
    for (std::size_t i = 0; i < size_; ++i) {
      for (Entry* entry = buckets_[i]; entry;) {
        Entry* const next = entry->next_;
        handler(static_cast<V&>(*entry));
        entry = next;
      }
    }
  }

private:
  Entry*& Bucket(std::uint32_t hashValue) const { return buckets_[hashValue & (size_ - 1)]; }

  /// For each bucket one bit a kind of hash value that its chain may hold. The bits come from that
  /// end of the value that doesn't choose the bucket.
  std::uint8_t& Kinds(std::uint32_t hashValue) const { return kinds_[hashValue & (size_ - 1)]; }
  static std::uint8_t KindOf(std::uint32_t hashValue) {
    return static_cast<std::uint8_t>(1U << (hashValue >> 29));
  }

  template <class Matches> V* Find(std::uint32_t hashValue, Matches&& matches) const {
    if (!buckets_ || !(Kinds(hashValue) & KindOf(hashValue)))
      return nullptr;
    unsigned steps = 0;
    Entry* entry = Bucket(hashValue);
    for (; entry; entry = entry->next_, ++steps) {
      if (entry->hash_ == hashValue && matches(static_cast<const V&>(*entry)))
        break;
    }
    if (steps > kLongChain)
      excessSteps_ += steps - kLongChain;
    return static_cast<V*>(entry);
  }

  void Link(Entry& entry) {
    Entry*& head = Bucket(entry.hash_);
    entry.prev_ = nullptr;
    entry.next_ = head;
    if (head)
      head->prev_ = &entry;
    head = &entry;
    Kinds(entry.hash_) |= KindOf(entry.hash_);
    entry.map_ = this;
    ++count_;
  }

  /// The bucket keeps its kinds as long as it holds anything: one too many only costs a look.
  void Unlink(Entry& entry) {
    Entry*& head = Bucket(entry.hash_);
    (entry.prev_ ? entry.prev_->next_ : head) = entry.next_;
    if (entry.next_)
      entry.next_->prev_ = entry.prev_;
    if (!head)
      Kinds(entry.hash_) = 0;
    entry.next_ = entry.prev_ = nullptr;
    entry.map_ = nullptr;
    --count_;
  }

  void Reserve(std::size_t count) {
    std::size_t wanted = buckets_ ? size_ : minimum_;
    while (wanted < count)
      wanted *= 2;
    if (!buckets_ || wanted != size_)
      Resize(wanted);
  }

  void Shrink() {
    if (count_ == 0) {
      buckets_.reset();
      kinds_.reset();
      return;
    }
    std::size_t wanted = size_;
    while (wanted > minimum_ && count_ < wanted / 4)
      wanted /= 2;
    if (wanted != size_)
      Resize(wanted);
  }

  /// Goes to another number of buckets, both being powers of two: each chain is split, or several
  /// are joined, in one walk that leaves the order of values in a chain as it is, so that of equal
  /// keys the newest stays in front.
  void Resize(std::size_t size) {
    const std::unique_ptr<Entry*[]> old = std::move(buckets_);
    const std::size_t oldSize = old ? size_ : 0;
    buckets_ = std::make_unique<Entry*[]>(size);
    kinds_ = std::make_unique<std::uint8_t[]>(size);
    size_ = size;
    const std::unique_ptr<Entry*[]> tails = std::make_unique<Entry*[]>(oldSize ? size : 0);
    for (std::size_t i = 0; i < oldSize; ++i) {
      // The values lie anywhere in memory: their lines are asked for ahead of time.
      constexpr std::size_t kAhead = 8;
      if (i + kAhead < oldSize)
        __builtin_prefetch(old[i + kAhead], 1);
      for (Entry* entry = old[i]; entry;) {
        Entry* const next = entry->next_;
        Entry*& tail = tails[entry->hash_ & (size_ - 1)];
        entry->prev_ = tail;
        entry->next_ = nullptr;
        (tail ? tail->next_ : Bucket(entry->hash_)) = entry;
        Kinds(entry->hash_) |= KindOf(entry->hash_);
        tail = entry;
        entry = next;
      }
    }
  }

  static constexpr unsigned kLongChain = 32;

  const std::size_t minimum_;
  mutable std::uint64_t excessSteps_ = 0;
  std::size_t size_ = 0;
  std::size_t count_ = 0;
  std::unique_ptr<Entry*[]> buckets_;
  std::unique_ptr<std::uint8_t[]> kinds_;
};

} // namespace vorrel
