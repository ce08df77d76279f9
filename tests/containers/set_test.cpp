// Set: the rules that differ from Map, and those that must not.
#include "containers/set.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "containers/views.h"

namespace {

std::vector<long> Keys(const Set& set) {
  std::vector<long> keys;
  for (long key : KeysOf<long>(&set)) keys.push_back(key);
  return keys;
}

using Longs = std::vector<long>;

Set Filled(long count, unsigned size = 2) {
  Set set(HASH_NUM, size);
  for (long i = 1; i <= count; i++) set.Insert(ToWord(i));
  return set;
}

TEST(Set, RefusesNullKeys) {
  Set set(HASH_STRING);
  EXPECT_EQ(set.Insert(nullptr), 0U);
  EXPECT_EQ(set.Remove(nullptr), 0U);
  EXPECT_EQ(set.GetItem(nullptr), nullptr);
  EXPECT_EQ(set.Size(), 0U);
  EXPECT_EQ(set.GetLast(), nullptr);
}

TEST(Set, HoldsAKeyOnceAndReplacesTheWordWhenTold) {
  std::string first = "key";
  std::string second = "key";
  Set set(HASH_STRING, 0);
  EXPECT_EQ(set.Capacity(), 2U);
  EXPECT_EQ(set.Insert(first.c_str()), 1U);
  EXPECT_EQ(set.Insert(second.c_str()), 0U);
  EXPECT_EQ(set.GetItem("key"), first.c_str());
  EXPECT_EQ(set.Insert(second.c_str(), /*force_overwrite=*/1), 0U);
  EXPECT_EQ(set.GetItem("key"), second.c_str());
  EXPECT_EQ(set.Size(), 1U);
}

TEST(Set, GrowsAsAMapDoes) {
  Set set = Filled(2);
  EXPECT_EQ(set.Insert(ToWord(1L)), 0U);
  EXPECT_EQ(set.Capacity(), 5U) << "a full table grows even for a key that is present";
  for (long i = 3; i <= 100; i++) set.Insert(ToWord(i));
  EXPECT_EQ(set.Capacity(), 191U);
  for (long i = 1; i <= 100; i++) EXPECT_TRUE(set.Contains(ToWord(i)));
  EXPECT_FALSE(set.Contains(ToWord(101L)));
  EXPECT_DOUBLE_EQ(set.Load(), 100.0 / 191);
}

TEST(Set, TakesFreedSlotsAgain) {
  for (unsigned size : {4U, 16U}) {
    Set set = Filled(3, size);
    EXPECT_EQ(set.Remove(ToWord(2L)), 1U);
    EXPECT_EQ(set.Remove(ToWord(2L)), 0U);
    set.Insert(ToWord(4L));
    EXPECT_EQ(Keys(set), (Longs{1, 4, 3})) << "of " << size;
  }
}

TEST(Set, PositionsCountLiveKeys) {
  Set set = Filled(9, 16);
  for (long key : {1L, 5L, 9L}) set.Remove(ToWord(key));
  Longs keys = Keys(set);
  for (unsigned i = 0; i < set.Size(); i++) {
    EXPECT_EQ(FromWord<long>(set.GetAt(i)), keys[i]);
    EXPECT_EQ(set.IndexOfItem(ToWord(keys[i])), i);
  }
  EXPECT_EQ(FromWord<long>(set.GetLast()), 8);
  EXPECT_EQ(set.IndexOfItem(ToWord(77L)), 0U);
  EXPECT_DEATH(set.GetAt(6), "idx < _size");
}

TEST(Set, CopiesAndResetsAsAMapDoes) {
  Set set = Filled(6, 8);
  set.Remove(ToWord(4L));
  Set copy(set);
  EXPECT_EQ(Keys(copy), (Longs{1, 2, 3, 5, 6}));
  copy.Insert(ToWord(9L));
  EXPECT_EQ(Keys(copy), (Longs{1, 2, 3, 9, 5, 6}));
  set.Reset();
  EXPECT_FALSE(set.Contains(ToWord(1L)));
  set.Insert(ToWord(7L));
  set.Insert(ToWord(8L));
  EXPECT_EQ(Keys(set), (Longs{7, 8}));
  EXPECT_EQ(set.Capacity(), 8U);
}

TEST(SetIter, WalksBothWaysAndSurvivesRemoval) {
  Set set = Filled(5, 8);
  Longs keys;
  void* key = nullptr;
  SetIter iter;
  for (iter.Last(&set); iter.Item(&key); iter.Previous()) {
    keys.push_back(FromWord<long>(key));
    if (keys.back() == 4) {
      set.Remove(ToWord(4L));
      set.Remove(ToWord(3L));
    }
  }
  EXPECT_EQ(keys, (Longs{5, 4, 2, 1}));
  iter.First(nullptr);
  EXPECT_EQ(iter.Item(nullptr), 0U);
}

} // namespace
