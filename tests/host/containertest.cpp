#include "kestan/host/arrayslice.h"
#include "kestan/host/cellmanagerpool.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/inlinedvector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
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

} // namespace

TEST(ByteHashTest, FoldsShortAndLongTextsInTheirOwnWays) {
  // An independent reckoning, by bytes instead of units.
  const auto reference = [](const QString& text, std::uint32_t h) {
    constexpr std::uint32_t m = 0x5BD1E995;
    std::vector<std::uint8_t> bytes;
    for (const QChar c : text) {
      bytes.push_back(static_cast<std::uint8_t>(c.unicode() & 0xFF));
      bytes.push_back(static_cast<std::uint8_t>(c.unicode() >> 8));
    }
    const auto word = [&bytes](std::size_t at, std::size_t count) {
      std::uint32_t k = 0;
      for (std::size_t i = 0; i < count; ++i)
        k |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
      return k;
    };
    const auto mix = [](std::uint32_t k) {
      k *= m;
      k ^= k >> 24;
      return k * m;
    };
    const auto tail = [](std::uint32_t x) {
      x ^= x >> 13;
      x *= m;
      return x ^ (x >> 15);
    };
    const std::size_t n = bytes.size();
    if (n <= 4)
      return tail((h * m) ^ mix(word(0, n)));
    h = tail((h * m) ^ mix(word(0, 2)));
    std::size_t at = 2;
    for (; n - at >= 4; at += 4)
      h = (h * m) ^ mix(word(at, 4));
    if (n - at == 2) {
      h ^= static_cast<std::uint32_t>(bytes[at + 1]) << 8;
      h ^= bytes[at];
      h *= m;
    }
    return tail(h);
  };
  for (const char* text : {"", "a", "ab", "abc", "abcd", "abcde", "http://server/document.kml"}) {
    SCOPED_TRACE(text);
    const QString wide =
        QString(text) + (std::string(text).size() > 3 ? QChar(0x20AC) : QChar('x'));
    EXPECT_EQ(reference(text, kByteHashSeed), hash<QString>()(text));
    EXPECT_EQ(reference(wide, 7), ByteHash(wide, 7));
  }
}

TEST(HashMapTest, GrowsAndShrinksWithItsValues) {
  WordMap map(2);
  EXPECT_EQ(0U, map.GetBucketCount());
  std::vector<std::unique_ptr<Word>> words;
  for (int i = 0; i < 100; ++i) {
    words.push_back(std::make_unique<Word>(QString::number(i)));
    map.insert(*words.back());
    EXPECT_GE(map.GetBucketCount(), map.count());
  }
  EXPECT_EQ(128U, map.GetBucketCount());
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(words[static_cast<std::size_t>(i)].get(), map.find(QString::number(i)));
  EXPECT_EQ(nullptr, map.find("100"));

  while (words.size() > 1) {
    words.pop_back();
    EXPECT_LE(map.GetBucketCount(), std::max<std::size_t>(4, 4 * map.count()));
  }
  EXPECT_EQ(4U, map.GetBucketCount());
  EXPECT_EQ(words[0].get(), map.find("0"));
  map.erase(*words[0]);
  map.erase(*words[0]);
  EXPECT_FALSE(words[0]->IsInMap());
  EXPECT_EQ(0U, map.GetBucketCount());
}

TEST(HashMapTest, ChainsKeepTheirValuesApart) {
  WordMap map(0);
  Word a("a");
  Word b("b");
  Word c("c");
  for (Word* const word : {&a, &b, &c})
    map.insert(*word, 5); // the same hash value for all
  EXPECT_EQ(&b, map.find(5, "b"));
  EXPECT_EQ(nullptr, map.find(6, "b"));
  map.erase(b);
  EXPECT_EQ(nullptr, map.find(5, "b"));
  EXPECT_EQ(&a, map.find(5, "a"));
  EXPECT_EQ(&c, map.find(5, "c"));
}

TEST(HashMapTest, OfEqualKeysTheNewestIsFoundAlsoAfterGrowth) {
  WordMap map(0);
  Word former("same");
  Word newest("same");
  map.insert(former);
  map.insert(newest);
  std::vector<std::unique_ptr<Word>> others;
  for (int i = 0; i < 50; ++i)
    map.insert(*others.emplace_back(std::make_unique<Word>(QString::number(i))));
  EXPECT_EQ(&newest, map.find("same"));
}

TEST(HashMapTest, MergeMovesAllValuesAndSettlesEqualKeys) {
  for (const bool replace : {true, false}) {
    SCOPED_TRACE(replace);
    WordMap destination(2);
    WordMap source(2);
    Word here("both");
    Word there("both");
    destination.insert(here);
    source.insert(there);
    std::vector<std::unique_ptr<Word>> words;
    for (int i = 0; i < 40; ++i) {
      words.push_back(std::make_unique<Word>(QString::number(i)));
      (i % 4 == 0 ? destination : source).insert(*words.back());
    }
    destination.merge(source, replace);
    EXPECT_EQ(0U, source.count());
    EXPECT_EQ(0U, source.GetBucketCount());
    EXPECT_EQ(41U, destination.count());
    EXPECT_EQ(replace ? &there : &here, destination.find("both"));
    EXPECT_EQ(replace, there.IsInMap());
    EXPECT_EQ(!replace, here.IsInMap());
    for (const auto& word : words) {
      EXPECT_EQ(&destination, word->GetMap());
      EXPECT_EQ(word.get(), destination.find(word->GetKey()));
    }
    std::set<QString> seen;
    destination.forEach([&seen](Word& word) { seen.insert(word.GetKey()); });
    EXPECT_EQ(41U, seen.size());
    destination.merge(destination, replace);
    EXPECT_EQ(41U, destination.count());
  }
}

TEST(HashMapTest, ItsEndSetsTheValuesFree) {
  Word word("word");
  {
    WordMap map(4);
    map.insert(word);
  }
  EXPECT_FALSE(word.IsInMap());
}

TEST(InlinedVectorTest, MovesItsElementsToTheHeapWhenItGrows) {
  const auto counted = std::make_shared<int>(7);
  {
    InlinedVector<std::shared_ptr<int>, 4> vector;
    for (int i = 0; i < 4; ++i)
      vector.push_back(counted);
    EXPECT_EQ(4U, vector.capacity());
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

TEST(ArraySliceTest, LooksAtAVector) {
  std::vector<int> numbers = {1, 2, 3};
  const ArraySlice<int> all(numbers);
  all[1] = 5;
  const ArraySlice<const int> tail(numbers.data() + 1, 2);
  EXPECT_EQ((std::vector<int>{5, 3}), std::vector<int>(tail.begin(), tail.end()));
}

TEST(CellManagerPoolTest, CellsAreApartAlignedAndUsedAgain) {
  CellManagerPool pool(40, 3);
  EXPECT_EQ(0U, pool.GetCellSize() % alignof(std::max_align_t));
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
