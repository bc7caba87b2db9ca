// Sorting by places.
#include "lumo/Order.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

struct Entry {
  unsigned key;
  std::size_t entered;
  bool operator==(const Entry&) const = default;
};

bool isBefore(const Entry& a, const Entry& b) { return a.key < b.key; }

std::vector<Entry> entriesOf(const std::vector<unsigned>& keys) {
  std::vector<Entry> entries;
  for (const unsigned key : keys) entries.push_back({key, entries.size()});
  return entries;
}

TEST(OrderTest, EqualsKeepTheirOrder) {
  EXPECT_EQ(Lumo::orderedPlaces(0, [](std::size_t, std::size_t) { return true; }).size(), 0u);
  EXPECT_EQ(Lumo::inOrder(entriesOf({2, 1, 2, 1}), isBefore),
            (std::vector<Entry>{{1, 1}, {1, 3}, {2, 0}, {2, 2}}));
  std::mt19937 random(5);
  std::vector<unsigned> keys(3000); // many of one key, and too many for a sort that only inserts
  for (unsigned& key : keys) key = static_cast<unsigned>(random() % 40);
  auto expected = entriesOf(keys);
  std::stable_sort(expected.begin(), expected.end(), isBefore);
  EXPECT_EQ(Lumo::inOrder(entriesOf(keys), isBefore), expected);
}

TEST(OrderTest, WhatIsInOrderIsComparedOnceAPlace) {
  const auto entries = entriesOf({1, 1, 2, 3, 5, 5, 5, 8});
  std::size_t compared = 0;
  const auto counted = [&](const Entry& a, const Entry& b) { return ++compared, isBefore(a, b); };
  EXPECT_EQ(Lumo::inOrder(entries, counted), entries);
  EXPECT_EQ(compared, entries.size() - 1);
}

} // namespace
