#pragma once

#include "kestan/host/bytehash.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

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
/// A large map can grow and take another one in by slices: while it grows, the buckets in front
/// have gone over to the larger table, and each value is found in that one of the two tables which
/// its bucket says.
///
/// Keys that were made to share a bucket turn it into a list. The map counts what that costs, so
/// that who takes keys from strangers can set a limit.
template <class K, class V, class Traits> class HashMap {
public:
  using Entry = HashMapEntry<K, V, Traits>;

  explicit HashMap(unsigned log2Minimum)
      : minimum_(std::size_t(1) << log2Minimum), floor_(minimum_) {}
  ~HashMap() { clear(); }
  HashMap(const HashMap&) = delete;
  HashMap& operator=(const HashMap&) = delete;

  std::size_t count() const { return count_; }
  std::size_t GetBucketCount() const { return next_.buckets ? next_.size : table_.size; }
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
    if (!table_.buckets)
      return;
    const Table& table = TableOf(hashValue);
    __builtin_prefetch(&table.Kinds(hashValue), 1);
    __builtin_prefetch(&table.Bucket(hashValue), 1);
  }

  void insert(V& value) { insert(value, Traits::Hash(value)); }

  /// Enters a value that is in no map. An equal key may be there already: the newest is found.
  void insert(V& value, std::uint32_t hashValue) {
    Entry& entry = value;
    entry.hash_ = hashValue;
    if (!table_.buckets)
      Resize(floor_);
    Link(entry);
    if (count_ > GetBucketCount())
      Resize(GetBucketCount() * 2);
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
    MergeSome(source, replace, [] { return true; });
  }

  /// The same in slices: `mayGoOn()` is asked every few steps, and when it's false the answer is
  /// false, and a further call goes on from there. In between each value is in just one of the
  /// maps, and both can be used.
  template <class MayGoOn> bool MergeSome(HashMap& source, bool replace, MayGoOn&& mayGoOn) {
    if (&source == this || source.count_ == 0)
      return true;
    if (!ReserveSome(count_ + source.count_, mayGoOn))
      return false;
    source.FinishGrowth();
    std::size_t steps = 0;
    for (std::size_t& i = source.drained_; source.count_ > 0; ++i) {
      if (i >= source.table_.size)
        i = 0; // something has come in, in front of this place
      source.PrefetchChain(i);
      for (Entry* entry = source.LastOf(i); entry;) { // so that of equal ones the newest stays
        Entry* const former = entry->prev_;
        source.Unlink(*entry);
        Take(*entry, replace);
        entry = former;
        if (++steps % kStepsATime == 0 && source.count_ > 0 && !mayGoOn())
          return false;
      }
    }
    source.Shrink();
    floor_ = minimum_;
    Shrink();
    return true;
  }

  /// Makes room for so many values, in slices like `MergeSome`. The room stays until a merge is
  /// complete or the map is empty.
  template <class MayGoOn> bool ReserveSome(std::size_t count, MayGoOn&& mayGoOn) {
    std::size_t wanted = GetBucketCount() ? GetBucketCount() : minimum_;
    while (wanted < count)
      wanted *= 2;
    floor_ = wanted;
    if (wanted != GetBucketCount())
      StartResize(wanted);
    for (std::size_t steps = 1; next_.buckets; ++steps) {
      SplitNext();
      if (steps % kStepsATime == 0 && next_.buckets && !mayGoOn())
        return false;
    }
    return true;
  }

  /// Takes all values out.
  void clear() {
    forEach([this](V& value) { Unlink(value); });
    Shrink();
  }

  /// Calls `handler(V&)` for each value, in no particular order. The handler must leave the map
  /// as it is.
  template <class Handler> void forEach(Handler&& handler) const {
    for (const Table* table : {&table_, &next_}) {
      for (std::size_t i = 0; table->buckets && i < table->size; ++i) {
        for (Entry* entry = table->buckets[i]; entry;) {
          Entry* const next = entry->next_;
          handler(static_cast<V&>(*entry));
          entry = next;
        }
      }
    }
  }

private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };

  /// So many bytes or pointers of nothing; those of a large table cost when they're used first.
  template <class T> static std::unique_ptr<T[], Free> Allocate(std::size_t size) {
    void* const memory = std::calloc(size, sizeof(T));
    if (!memory)
      throw std::bad_alloc();
    return std::unique_ptr<T[], Free>(static_cast<T*>(memory));
  }

  struct Table {
    Table() = default;
    explicit Table(std::size_t count)
        : size(count), buckets(Allocate<Entry*>(count)), kinds(Allocate<std::uint8_t>(count)) {}

    Entry*& Bucket(std::uint32_t hashValue) const { return buckets[hashValue & (size - 1)]; }

    /// For each bucket one bit a kind of hash value that its chain may hold. The bits come from
    /// that end of the value that doesn't choose the bucket.
    std::uint8_t& Kinds(std::uint32_t hashValue) const { return kinds[hashValue & (size - 1)]; }

    void PushFront(Entry& entry) {
      Entry*& head = Bucket(entry.hash_);
      entry.prev_ = nullptr;
      entry.next_ = head;
      if (head)
        head->prev_ = &entry;
      head = &entry;
      Kinds(entry.hash_) |= KindOf(entry.hash_);
    }

    std::size_t size = 0;
    std::unique_ptr<Entry*[], Free> buckets;
    std::unique_ptr<std::uint8_t[], Free> kinds;
  };

  static std::uint8_t KindOf(std::uint32_t hashValue) {
    return static_cast<std::uint8_t>(1U << (hashValue >> 29));
  }

  /// The one of the two tables that has the bucket of this hash value.
  const Table& TableOf(std::uint32_t hashValue) const {
    return (hashValue & (table_.size - 1)) < split_ ? next_ : table_;
  }
  Table& TableOf(std::uint32_t hashValue) {
    return (hashValue & (table_.size - 1)) < split_ ? next_ : table_;
  }

  template <class Matches> V* Find(std::uint32_t hashValue, Matches&& matches) const {
    if (!table_.buckets)
      return nullptr;
    const Table& table = TableOf(hashValue);
    if (!(table.Kinds(hashValue) & KindOf(hashValue)))
      return nullptr;
    unsigned steps = 0;
    Entry* entry = table.Bucket(hashValue);
    for (; entry; entry = entry->next_, ++steps) {
      if (entry->hash_ == hashValue && matches(static_cast<const V&>(*entry)))
        break;
    }
    if (steps > kLongChain)
      excessSteps_ += steps - kLongChain;
    return static_cast<V*>(entry);
  }

  void Link(Entry& entry) {
    TableOf(entry.hash_).PushFront(entry);
    entry.map_ = this;
    ++count_;
  }

  /// The bucket keeps its kinds as long as it holds anything: one too many only costs a look.
  void Unlink(Entry& entry) {
    Table& table = TableOf(entry.hash_);
    Entry*& head = table.Bucket(entry.hash_);
    (entry.prev_ ? entry.prev_->next_ : head) = entry.next_;
    if (entry.next_)
      entry.next_->prev_ = entry.prev_;
    if (!head)
      table.Kinds(entry.hash_) = 0;
    entry.next_ = entry.prev_ = nullptr;
    entry.map_ = nullptr;
    --count_;
  }

  /// Enters an entry that another map has given away.
  void Take(Entry& entry, bool replace) {
    const V& value = static_cast<const V&>(entry);
    V* const equal =
        Find(entry.hash_, [&value](const V& other) { return Traits::Equals(other, value); });
    if (equal && !replace)
      return;
    if (equal)
      Unlink(*equal);
    Link(entry);
  }

  void Shrink() {
    if (count_ == 0) {
      table_ = Table();
      next_ = Table();
      split_ = 0;
      drained_ = 0;
      floor_ = minimum_;
      return;
    }
    if (next_.buckets)
      return;
    std::size_t wanted = table_.size;
    while (wanted > floor_ && count_ < wanted / 4)
      wanted /= 2;
    if (wanted != table_.size)
      Resize(wanted);
  }

  /// Goes to another number of buckets, both being powers of two: each chain is split, or several
  /// are joined. Values with equal keys come from one chain, which keeps its order, so that the
  /// newest stays in front.
  void Resize(std::size_t size) {
    StartResize(size);
    FinishGrowth();
  }

  void StartResize(std::size_t size) {
    FinishGrowth();
    drained_ = 0;
    if (table_.buckets)
      next_ = Table(size);
    else
      table_ = Table(size);
  }

  void FinishGrowth() {
    while (next_.buckets)
      SplitNext();
  }

  /// Has the next bucket go over to the other table.
  void SplitNext() {
    PrefetchChain(split_);
    const std::size_t i = split_++;
    for (Entry* entry = LastOf(i); entry;) {
      Entry* const former = entry->prev_;
      next_.PushFront(*entry);
      entry = former;
    }
    table_.buckets[i] = nullptr;
    if (split_ < table_.size)
      return;
    table_ = std::move(next_);
    next_ = Table();
    split_ = 0;
  }

  Entry* LastOf(std::size_t bucket) const {
    Entry* entry = table_.buckets[bucket];
    while (entry && entry->next_)
      entry = entry->next_;
    return entry;
  }

  /// The values lie anywhere in memory: on a walk their lines are asked for ahead of time.
  void PrefetchChain(std::size_t bucket) const {
    constexpr std::size_t kAhead = 8;
    if (bucket + kAhead < table_.size)
      __builtin_prefetch(table_.buckets[bucket + kAhead], 1);
  }

  static constexpr unsigned kLongChain = 32;
  static constexpr std::size_t kStepsATime = 32;

  const std::size_t minimum_;
  std::size_t floor_; ///< Fewer buckets than this aren't worth while.
  mutable std::uint64_t excessSteps_ = 0;
  std::size_t count_ = 0;
  Table table_;
  Table next_;              ///< The larger one, while the map grows.
  std::size_t split_ = 0;   ///< Buckets of `table_` that have gone over to it.
  std::size_t drained_ = 0; ///< Buckets in front that a merge has emptied.
};

} // namespace vorrel
