// Both collection families: one suite over their common operations, and random operations against
// the standard map.
#include "lumo/HashMap2018.h"
#include "lumo/RbTreeMap.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

template <class Map>
struct CollectionTest : testing::Test {
  Map map;

  void fill(int count) {
    for (int key = 0; key < count; ++key) map.insertOrAssign(key, std::to_string(key));
  }
  /// The keys that a cursor visits while `change(key)` changes the map at each.
  template <class Change>
  std::vector<int> walk(Change&& change) {
    std::vector<int> keys;
    for (auto at = map.cursor(); at; at.next()) {
      keys.push_back(at.key());
      change(at.key());
    }
    return keys;
  }
};
using Maps = testing::Types<Lumo::RbTreeMap<int, std::string>, Lumo::HashMap2018<int, std::string>>;
TYPED_TEST_SUITE(CollectionTest, Maps);

TYPED_TEST(CollectionTest, InsertsOverwritesErasesAndCopies) {
  EXPECT_FALSE(this->map.cursor());
  this->map.insertOrAssign(1, "one");
  EXPECT_EQ(this->map.insertOrAssign(1, "uno"), "uno");
  EXPECT_EQ(this->map.size(), 1u);
  std::string old;
  EXPECT_TRUE(this->map.erase(1, &old));
  EXPECT_EQ(old, "uno");
  EXPECT_FALSE(this->map.erase(1, &old));
  EXPECT_EQ(old, "uno") << "a missing key leaves the old value alone";
  EXPECT_TRUE(this->map.empty());
  this->fill(20);
  TypeParam copy = this->map;
  EXPECT_TRUE(copy == this->map);
  copy.insertOrAssign(4, "x");
  EXPECT_FALSE(copy == this->map);
  EXPECT_EQ(*this->map.find(4), "4");
}

TYPED_TEST(CollectionTest, AWalkSkipsMembersDeletedAheadOfIt) {
  this->fill(10);
  const auto all = this->walk([](int) {});
  const auto keys = this->walk([&](int key) { // deletes the one that would come next
    const auto next = std::find(all.begin(), all.end(), key) + 1;
    if (next != all.end()) this->map.erase(*next);
  });
  EXPECT_EQ(keys, (std::vector{all[0], all[2], all[4], all[6], all[8]}));
}

TYPED_TEST(CollectionTest, AWalkSurvivesInsertions) {
  this->fill(10);
  int inserted = 10;
  auto keys = this->walk([&](int) { // enough of them to grow and move the members
    for (int i = 0; inserted < 2000 && i < 100; ++i) this->map.insertOrAssign(inserted++, "new");
  });
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end());
  for (int old = 0; old < 10; ++old) EXPECT_EQ(keys.at(static_cast<std::size_t>(old)), old);
}

TYPED_TEST(CollectionTest, AWalkDeletesTheMembersThatItStandsOn) {
  this->fill(20);
  std::vector<int> keys;
  for (auto at = this->map.cursor(); at; at.next()) {
    keys.push_back(at.key());
    if (at.key() == 5) this->map.erase(6);
    this->map.erase(at);
    EXPECT_EQ(at.value(), nullptr);
    this->map.erase(at); // a second time is of no consequence
  }
  EXPECT_TRUE(this->map.empty());
  EXPECT_EQ(keys.size(), 19u);
}

// A member that comes back counts as new and may be visited again, so it comes back once here.
TYPED_TEST(CollectionTest, AWalkSurvivesDeletionAndReinsertionOfItsMember) {
  this->fill(10);
  bool back = false;
  auto keys = this->walk([&](int key) {
    this->map.erase(key);
    if (key == 5 && !std::exchange(back, true)) this->map.insertOrAssign(5, "again");
  });
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  EXPECT_EQ(keys, (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TYPED_TEST(CollectionTest, ACursorTellsOfADeletedMember) {
  this->fill(3);
  auto at = this->map.cursor();
  ASSERT_NE(at.value(), nullptr);
  EXPECT_EQ(*at.value(), std::to_string(at.key()));
  this->map.erase(at.key());
  EXPECT_EQ(at.value(), nullptr);
}

TYPED_TEST(CollectionTest, BehavesAsTheStandardMapUnderRandomOperations) {
  std::mt19937 random(20231);
  std::map<int, std::string> model;
  for (int step = 0; step < 40000; ++step) {
    // Phases of growth and of shrinkage, on few keys, so that holes and rebuilds come about.
    const bool grow = (step / 4000) % 2 == 0;
    const int key = static_cast<int>(random() % 700);
    if (random() % 10 < (grow ? 8u : 2u)) {
      const auto value = std::to_string(random());
      ASSERT_EQ(this->map.insertOrAssign(key, value), value);
      model[key] = value;
    } else {
      ASSERT_EQ(this->map.erase(key), model.erase(key) == 1);
    }
    const auto* const found = this->map.find(key);
    ASSERT_EQ(found != nullptr, model.count(key) == 1);
    ASSERT_EQ(this->map.size(), model.size());
    if (step % 1000 != 0) continue;
    std::map<int, std::string> walked;
    for (auto at = this->map.cursor(); at; at.next()) walked[at.key()] = *at.value();
    ASSERT_EQ(walked, model);
  }
}

TEST(RbTreeMapTest, WalksInTheOrderOfItsKeys) {
  Lumo::RbTreeMap<int, int> map;
  for (const int key : {5, 1, 9, 3, 7, 2, 8, 10, 4, 6}) map.insertOrAssign(key, key);
  int last = 0;
  for (const auto& [key, value] : map) EXPECT_EQ(key, ++last);
  EXPECT_EQ(last, 10);
  const int* const one = map.find(1);
  for (int key = 11; key < 5000; ++key) map.insertOrAssign(key, key);
  for (int key = 2; key < 5000; key += 2) map.erase(key);
  EXPECT_EQ(map.find(1), one) << "members stay where they are";
}

/// A key whose hashes collide, or differ in their high bits alone.
struct BadKey {
  std::uint64_t value;
  std::size_t hash() const { return value << 48; }
  friend bool operator==(const BadKey&, const BadKey&) = default;
};

TEST(HashMap2018Test, KeepsKeysWithBadHashesApart) {
  Lumo::HashMap2018<BadKey, std::uint64_t> map;
  for (std::uint64_t i = 0; i < 1000; ++i) map.insertOrAssign({i << 16}, i); // one hash for all
  for (std::uint64_t i = 0; i < 1000; ++i) map.insertOrAssign({i}, i);
  EXPECT_EQ(map.size(), 1999u); // {0} twice
  for (std::uint64_t i = 1; i < 1000; ++i) {
    ASSERT_NE(map.find({i << 16}), nullptr);
    EXPECT_EQ(*map.find({i << 16}), i);
    EXPECT_EQ(*map.find({i}), i);
  }
}

} // namespace
