#include "kestan/host/cellmanagerpool.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/inlinedvector.h"
#include "kestan/host/memory.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

using namespace vorrel;

namespace {

class Word final : public HashMapEntry<QString, Word> {
public:
  explicit Word(const QString& key) : key_(key) {}
  ~Word() {
    if (IsInMap())
      GetMap()->erase(*this);
  }
  const QString& GetKey() const { return key_; }

private:
  const QString key_;
};

using WordMap = HashMap<QString, Word>;

template <class T, class = void> constexpr bool kIsMadeOnHeaps = false;
template <class T>
constexpr bool kIsMadeOnHeaps<T, std::void_t<decltype(new (std::declval<MemoryManager*>()) T)>> =
    true;
// Any other object would take the place of the heap itself.
static_assert(kIsMadeOnHeaps<MemoryObject> && !kIsMadeOnHeaps<int> && !kIsMadeOnHeaps<int[2]>);

} // namespace

TEST(HashMapTest, TheNewestOfAKeyIsFoundWhateverComesAndGoes) {
  std::mt19937 random(8);
  // Eight buckets at most for all, of several kinds, and some keys with one hash value.
  const auto hashOf = [](int key) { return static_cast<std::uint32_t>(key % 8 + (key % 5 << 29)); };
  {
    WordMap map(2);
    EXPECT_EQ(0U, map.GetBucketCount());
    std::vector<std::unique_ptr<Word>> words; // the newest behind
    for (int i = 0; i < 4000 || !words.empty(); ++i) {
      if (i < 4000 && random() % (i < 2000 ? 4 : 2) != 0) {
        const int key = static_cast<int>(random() % 50);
        words.push_back(std::make_unique<Word>(QString::number(key)));
        map.insert(*words.back(), hashOf(key));
        EXPECT_GE(map.GetBucketCount(), map.count());
      } else if (!words.empty()) {
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(random() % words.size()));
        EXPECT_LE(map.GetBucketCount(), std::max<std::size_t>(4, 4 * map.count()));
      }
      ASSERT_EQ(words.size(), map.count());
      const int key = static_cast<int>(random() % 60);
      const QString text = QString::number(key);
      const auto newest = std::find_if(words.rbegin(), words.rend(), [&text](const auto& word) {
        return word->GetKey() == text;
      });
      ASSERT_EQ(newest == words.rend() ? nullptr : newest->get(), map.find(hashOf(key), text));
      ASSERT_EQ(nullptr, map.find(~hashOf(key), text));
    }
    EXPECT_EQ(0U, map.GetBucketCount());
  }
  Word word("a");
  {
    WordMap map(0);
    map.insert(word);
    map.erase(word);
    map.erase(word);
    map.insert(word);
    EXPECT_EQ(1U, map.count());
  }
  EXPECT_FALSE(word.IsInMap()); // the end of the map sets it free
}

TEST(HashMapTest, AMergeSettlesEqualKeys) {
  for (const bool replace : {true, false}) {
    SCOPED_TRACE(replace);
    WordMap destination(2);
    WordMap source(2);
    Word here("both");
    Word there("both");
    destination.insert(here);
    source.insert(there);
    destination.merge(source, replace);
    EXPECT_EQ(replace ? &there : &here, destination.find("both"));
    EXPECT_EQ(replace, there.IsInMap());
    EXPECT_EQ(!replace, here.IsInMap());
    destination.merge(destination, replace);
    EXPECT_EQ(1U, destination.count());
  }
}

TEST(HashMapTest, ASlicedMergeLeavesEachValueInOneMap) {
  std::mt19937 random(5);
  WordMap destination(2);
  WordMap source(2);
  std::vector<std::unique_ptr<Word>> words;
  const auto add = [&](WordMap& map, int key, std::uint32_t hashValue) {
    words.push_back(std::make_unique<Word>(QString::number(key)));
    map.insert(*words.back(), hashValue);
  };
  const auto hashOf = [](int key) { return hash<QString>()(QString::number(key)); };
  for (int i = 0; i < 3000; ++i)
    add(source, i, hashOf(i));
  for (int i = 0; i < 200; ++i)
    add(source, -1 - i, 0x20000000); // a chain is no reason to go on
  for (int i = 2000; i < 3500; ++i)
    add(destination, i, hashOf(i));
  int slices = 0;
  while (!destination.MergeSome(source, true, [] { return false; })) {
    ++slices;
    std::size_t count = 0;
    for (const auto& word : words) {
      if (!word || !word->IsInMap())
        continue;
      ++count;
      const WordMap* const map = word->GetMap();
      ASSERT_EQ(word.get(), map->find(word->GetHash(), word->GetKey()));
    }
    ASSERT_EQ(source.count() + destination.count(), count);
    std::size_t met = 0;
    destination.forEach([&met](Word&) { ++met; });
    ASSERT_EQ(destination.count(), met);
    words[random() % words.size()].reset();
    if (slices % 10 == 0) {
      for (int i = 0; i < slices; ++i) // more than there was room for
        add(destination, 10000 + 1000 * slices + i, static_cast<std::uint32_t>(random()));
    }
  }
  EXPECT_GT(slices, 100);
  EXPECT_EQ(0U, source.GetBucketCount());
  for (const auto& word : words) {
    EXPECT_TRUE(!word || !word->IsInMap() ||
                destination.find(word->GetHash(), word->GetKey()) == word.get());
  }
  words.clear();
  EXPECT_EQ(0U, destination.GetBucketCount());
}

TEST(InlinedVectorTest, MovesItsElementsToTheHeapWhenItGrows) {
  const auto counted = std::make_shared<int>(7);
  {
    InlinedVector<std::shared_ptr<int>, 4> vector;
    for (int i = 0; i < 4; ++i)
      vector.push_back(counted);
    vector.push_back(vector[0]); // an element of its own, in the moment of growth
    EXPECT_EQ(8U, vector.capacity());
    EXPECT_EQ(6, counted.use_count());
    EXPECT_TRUE(
        std::all_of(vector.begin(), vector.end(), [&](const auto& p) { return p == counted; }));
    vector.pop_back();
    EXPECT_EQ(5, counted.use_count());
  }
  EXPECT_EQ(1, counted.use_count());
}

TEST(CellManagerPoolTest, CellsAreApartAlignedAndUsedAgain) {
  CellManagerPool pool(40, 3);
  std::set<void*> cells;
  for (int i = 0; i < 10; ++i) {
    void* const cell = pool.allocate();
    EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(cell) % alignof(std::max_align_t));
    std::fill_n(static_cast<char*>(cell), 40, 'x'); // a tool sees it if cells overlap the block
    EXPECT_TRUE(cells.insert(cell).second);
  }
  for (void* const cell : cells)
    pool.free(cell);
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(1U, cells.count(pool.allocate()));
}

TEST(RefPtrTest, AssignmentSurvivesTheEndOfWhatHeldTheNewObject) {
  struct Node : Referent {
    RefPtr<Node> next;
  };
  RefPtr<Node> head(new Node);
  head->next = new Node;
  Node* const second = head->next.get();
  head = head->next; // ends the first node, which held the reference that is being copied
  EXPECT_EQ(second, head.get());
  head = second; // to itself
  EXPECT_EQ(1, head->GetRefCount());
  const RefPtr<const Referent> moved = std::move(head);
  EXPECT_FALSE(head);
  EXPECT_EQ(1, moved->GetRefCount());
}
