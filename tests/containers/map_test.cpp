// Map: hashing, insertion and removal, duplicates, growth, order and positions. GigaMap: growth by pages.
#include "containers/map.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "containers/views.h"

namespace {

const void* Key(uintptr_t number) { return reinterpret_cast<const void*>(number); }
uintptr_t Number(const void* word) { return reinterpret_cast<uintptr_t>(word); }

std::vector<uintptr_t> Keys(const Map& map) {
  std::vector<uintptr_t> keys;
  for (auto [key, value] : Entries<const void*, const void*>(map)) keys.push_back(Number(key));
  return keys;
}

using Words = std::vector<uintptr_t>;

Map Filled(unsigned count, unsigned size = 2) {
  Map map(HASH_NUM, size);
  for (unsigned i = 1; i <= count; i++) map.Insert(Key(i), Key(100 + i));
  return map;
}

TEST(Hash, StringsHashAsSignedBytes) {
  EXPECT_EQ(Hash::StringCompare(nullptr, nullptr), 0U);
  EXPECT_EQ(Hash::StringCompare("", nullptr), 5381U);
  EXPECT_EQ(Hash::StringCompare("a", nullptr), 5381U * 33 + 'a');
  EXPECT_EQ(Hash::StringCompare("\x80", nullptr), 5381U * 33 - 128);
  std::string longer(40, 'z');
  EXPECT_LE(Hash::StringCompare(longer.c_str(), nullptr), 0xFFFFFFFFUL) << "the hash wraps at 32 bits";
}

TEST(Hash, FoldsAsciiLettersOnly) {
  EXPECT_TRUE(Hash::StringCaseInsensitiveCompare("NetA", "nETa"));
  EXPECT_EQ(Hash::StringCaseInsensitiveCompare("NetA", nullptr), Hash::StringCompare("neta", nullptr));
  EXPECT_FALSE(Hash::StringCaseInsensitiveCompare("[", "{"));
  EXPECT_FALSE(Hash::StringCaseInsensitiveCompare("\xC4", "\xE4"));
  EXPECT_FALSE(Hash::StringCaseInsensitiveCompare("net", "nets"));
}

TEST(Hash, AddressesLoseTheirTwoLowBits) {
  EXPECT_EQ(Hash::PointerCompare(Key(0x40), nullptr), 0x10U);
  EXPECT_EQ(Hash::NumCompare(Key(0x41), nullptr), 0x41U);
  EXPECT_TRUE(Hash::PointerCompare(Key(0x41), Key(0x41)));
  EXPECT_FALSE(Hash::PointerCompare(Key(0x41), Key(0x40)));
  EXPECT_DEATH(Hash::Function(static_cast<hash_type>(4)), "");
}

TEST(Map, RefusesANullKeyWithANullValueOnly) {
  Map map(HASH_STRING);
  EXPECT_EQ(map.Insert(nullptr, nullptr), 0U);
  EXPECT_EQ(map.Size(), 0U);
  EXPECT_EQ(map.Insert(nullptr, Key(7)), 1U);
  ASSERT_NE(map.GetItem(nullptr), nullptr);
  EXPECT_EQ(map.GetValue(nullptr), Key(7));
  EXPECT_EQ(map.GetItem("x"), nullptr);
}

TEST(Map, NullKeysAreFoundAmongBuckets) {
  Map map(HASH_STRING, 11);
  map.Insert("a", Key(1));
  map.Insert(nullptr, Key(2));
  EXPECT_EQ(map.GetValue(nullptr), Key(2));
  EXPECT_EQ(map.GetValue(std::string("a").c_str()), Key(1));
  EXPECT_EQ(map.Remove(static_cast<const void*>(nullptr)), 1U);
  EXPECT_EQ(map.GetItem(nullptr), nullptr);
}

TEST(Map, AStoredNullValueReadsAsAbsence) {
  Map map(HASH_STRING);
  map.Insert("a", nullptr);
  EXPECT_EQ(map.GetValue("a"), nullptr);
  EXPECT_NE(map.GetItem("a"), nullptr);
}

TEST(Map, OverwritesOnlyWhenTold) {
  Map map = Filled(3);
  EXPECT_EQ(map.Insert(Key(2), Key(9)), 0U);
  EXPECT_EQ(map.GetValue(Key(2)), Key(102));
  EXPECT_EQ(map.Insert(Key(2), Key(9), /*force_overwrite=*/1), 0U);
  EXPECT_EQ(map.GetValue(Key(2)), Key(9));
  EXPECT_EQ(map.Size(), 3U);
}

TEST(Map, OverwritingReplacesTheKeyWordToo) {
  std::string first = "name";
  std::string second = "name";
  Map map(HASH_STRING);
  map.Insert(first.c_str(), Key(1));
  map.Insert(second.c_str(), Key(2), /*force_overwrite=*/1);
  EXPECT_EQ(map.GetItem("name")->Key(), second.c_str());
}

TEST(Map, InsertingAPresentKeyIntoAFullTableStillGrowsIt) {
  Map map = Filled(2);
  EXPECT_EQ(map.Capacity(), 2U);
  EXPECT_EQ(map.Insert(Key(1), Key(9)), 0U);
  EXPECT_EQ(map.Capacity(), 5U);
}

TEST(Map, GrowsFromTwoByDoublingAndOne) {
  Map map(HASH_NUM, 2);
  std::vector<unsigned> capacities;
  for (unsigned i = 1; i <= 24; i++) {
    map.Insert(Key(i), nullptr);
    if (capacities.empty() || capacities.back() != map.Capacity()) capacities.push_back(map.Capacity());
  }
  EXPECT_EQ(capacities, (std::vector<unsigned>{2, 5, 11, 23, 47}));
  for (unsigned i = 1; i <= 24; i++) EXPECT_NE(map.GetItem(Key(i)), nullptr);
}

TEST(Map, ATableOfNoSlotsHoldsNothingUntilItsFirstInsertion) {
  Map map(HASH_POINTER, 0);
  EXPECT_EQ(map.GetItem(Key(4)), nullptr);
  EXPECT_DOUBLE_EQ(map.Load(), 0.0);
  EXPECT_EQ(MapIter(&map).Item(nullptr, nullptr), 0U);
  map.Insert(Key(4), Key(1));
  EXPECT_EQ(map.Capacity(), 1U);
  EXPECT_EQ(Map(Hash::NumCompare, 0).Capacity(), 2U);
}

TEST(Map, FindsEveryKeyOfATableWithAndWithoutBuckets) {
  for (unsigned size : {5U, 6U}) {
    Map map = Filled(size, size);
    for (unsigned i = 1; i <= size; i++) EXPECT_EQ(map.GetValue(Key(i)), Key(100 + i)) << "of " << size;
    EXPECT_EQ(map.GetItem(Key(size + 1)), nullptr);
  }
  Map map = Filled(5, 5);
  unsigned long small = map.MemUsage();
  map.Insert(Key(6), nullptr);
  EXPECT_EQ(map.Capacity(), 11U);
  EXPECT_GT(map.MemUsage(), small + 6 * sizeof(MapItem)) << "eleven slots come with a table of buckets";
}

TEST(Map, TheSlotFreedLastIsTakenFirst) {
  Map map = Filled(3, 8);
  map.Remove(Key(2));
  map.Insert(Key(4), nullptr);
  EXPECT_EQ(Keys(map), (Words{1, 4, 3}));
  map.Remove(Key(1));
  map.Remove(Key(3));
  map.Insert(Key(5), nullptr);
  map.Insert(Key(6), nullptr);
  EXPECT_EQ(Keys(map), (Words{6, 4, 5}));
}

TEST(Map, RemovingTakesOneItemOfAKey) {
  for (unsigned size : {4U, 16U}) {
    Map map(HASH_NUM, size);
    map.Insert(Key(1), Key(10));
    map.Insert(Key(1), Key(20), 0, /*force_insert=*/1);
    EXPECT_EQ(map.Remove(Key(1)), 1U);
    EXPECT_EQ(map.GetValue(Key(1)), Key(10));
    EXPECT_EQ(map.Remove(Key(1)), 1U);
    EXPECT_EQ(map.Remove(Key(1)), 0U);
    EXPECT_EQ(map.Size(), 0U);
  }
}

TEST(Map, TheNewestDuplicateIsFoundFirstAndOlderOnesFollow) {
  for (unsigned size : {5U, 16U}) {
    Map map(HASH_NUM, size);
    EXPECT_EQ(map.Insert(Key(1), Key(10), 0, 1), 1U);
    EXPECT_EQ(map.Insert(Key(1), Key(20), 0, 1), 0U);
    map.Insert(Key(2), Key(99));
    EXPECT_EQ(map.Insert(Key(1), Key(30), /*force_overwrite=*/1, /*force_insert=*/1), 0U);
    Words values;
    for (MapItem* item = map.GetItem(Key(1)); item; item = map.GetNextSameKeyItem(item))
      values.push_back(Number(item->Value()));
    EXPECT_EQ(values, (Words{30, 20, 10})) << "of " << size;
  }
}

TEST(Map, GrowthOfBucketsTurnsDuplicatesRound) {
  Map map(HASH_NUM, 6);
  map.Insert(Key(1), Key(10));
  map.Insert(Key(1), Key(20), 0, 1);
  EXPECT_EQ(map.GetValue(Key(1)), Key(20));
  for (unsigned i = 2; i <= 6; i++) map.Insert(Key(i), nullptr);
  ASSERT_EQ(map.Capacity(), 13U);
  EXPECT_EQ(map.GetValue(Key(1)), Key(10));
}

TEST(Map, AnItemThatIsNotChainedIsNotRemoved) {
  Map map = Filled(8, 16);
  MapItem* item = map.GetItem(Key(3));
  EXPECT_EQ(map.Remove(item), 1U);
  EXPECT_EQ(map.Remove(item), 0U);
  EXPECT_EQ(map.Size(), 7U);
}

TEST(Map, ResetKeepsTheStorageAndRefillsFromTheFirstSlot) {
  Map map = Filled(7, 8);
  map.Reset();
  EXPECT_EQ(map.Size(), 0U);
  EXPECT_EQ(map.Capacity(), 8U);
  EXPECT_EQ(map.GetItem(Key(1)), nullptr);
  map.Insert(Key(20), Key(1));
  EXPECT_EQ(map.GetItemAt(0)->Key(), Key(20));
  map.Insert(Key(21), Key(1));
  map.Insert(Key(22), Key(1));
  EXPECT_EQ(Keys(map), (Words{20, 21, 22}));
}

TEST(Map, PositionsCountLiveItems) {
  Map map = Filled(10, 16);
  for (unsigned i : {1U, 4U, 9U}) map.Remove(Key(i));
  Words keys = Keys(map);
  for (unsigned i = 0; i < map.Size(); i++) {
    EXPECT_EQ(Number(map.GetItemAt(i)->Key()), keys[i]);
    EXPECT_EQ(map.IndexOf(Key(keys[i])), i);
    EXPECT_EQ(Number(map.GetValueAt(i)), keys[i] + 100);
  }
  EXPECT_EQ(map.IndexOf(Key(77)), 0U);
  EXPECT_DEATH(map.GetItemAt(7), "idx < _size");
}

TEST(Map, ACopyHasTheOriginalsHolesOrderAndPositions) {
  Map map = Filled(9, 12);
  map.Remove(Key(3));
  map.Remove(Key(7));
  Map copy(map);
  EXPECT_EQ(Keys(copy), Keys(map));
  EXPECT_EQ(copy.Capacity(), map.Capacity());
  copy.Insert(Key(50), nullptr);
  EXPECT_EQ(Keys(copy), (Words{1, 2, 50, 4, 5, 6, 8, 9})) << "the free slots of a copy are taken from the lowest";
  EXPECT_EQ(copy.GetValue(Key(9)), Key(109));
}

TEST(MapIter, SurvivesRemovalAndGrowthDuringAWalk) {
  Map map = Filled(5, 5);
  Words visited;
  for (MapIter iter(&map); iter.Item(nullptr, nullptr); iter.Next()) {
    void* key = nullptr;
    iter.Item(&key, nullptr);
    visited.push_back(Number(key));
    if (Number(key) == 2) {
      map.Remove(Key(2));
      map.Remove(Key(3));
    }
    if (Number(key) == 4)
      for (unsigned i = 10; i < 30; i++) map.Insert(Key(i), nullptr);
  }
  EXPECT_EQ((Words{visited.begin(), visited.begin() + 4}), (Words{1, 2, 4, 5}));
  EXPECT_EQ(map.Size(), 23U);
}

TEST(MapIter, WalksBackwardsAndCountsPositions) {
  Map map = Filled(6, 8);
  map.Remove(Key(6));
  map.Remove(Key(2));
  MapIter iter;
  iter.Last(&map);
  Words keys;
  void* key = nullptr;
  unsigned position = map.Size() - 1;
  while (iter.Item(&key, nullptr)) {
    keys.push_back(Number(key));
    unsigned next = iter.Previous();
    if (!position) continue;
    EXPECT_EQ(next, --position);
  }
  EXPECT_EQ(keys, (Words{5, 4, 3, 1}));
  iter.First(&map);
  EXPECT_EQ(iter.Next(), 1U);
}

TEST(MapIter, ANullMapIsFinishedAtOnce) {
  MapIter iter(nullptr);
  EXPECT_EQ(iter.Item(nullptr, nullptr), 0U);
  iter.Next();
  iter.Last(nullptr);
  EXPECT_EQ(iter.Item(nullptr, nullptr), 0U);
}

TEST(MapIter, ReplacesTheCurrentValue) {
  Map map = Filled(2);
  MapIter iter(&map);
  iter.SetValue(ToWord(5));
  EXPECT_EQ(map.GetValue(Key(1)), Key(5));
  iter.Next();
  iter.Next();
  EXPECT_DEATH(iter.SetValue(nullptr), "_map && _idx<_map->_entry_size");
}

constexpr unsigned page = 0x100000;

TEST(GigaMap, BehavesAsAMapBelowOnePage) {
  GigaMap map(HASH_NUM, 0);
  EXPECT_EQ(map.Capacity(), 2U);
  EXPECT_EQ(map.IsGigaMap(), 1U);
  for (unsigned i = 1; i <= 100; i++) map.Insert(Key(i), Key(i));
  map.Remove(Key(50));
  EXPECT_EQ(map.GetItem(Key(50)), nullptr);
  EXPECT_EQ(map.GetValue(Key(51)), Key(51));
  map.Insert(Key(500), nullptr);
  EXPECT_EQ(map.GetItemAt(49)->Key(), Key(500));
}

TEST(GigaMap, GrowsByPagesPastTheFirst) {
  GigaMap map(HASH_NUM, 600000);
  for (unsigned i = 1; i <= 600001; i++) map.Insert(Key(i), Key(i));
  EXPECT_EQ(map.Capacity(), page) << "doubling stops at one page";
  for (unsigned i = 600002; i <= page + 1; i++) map.Insert(Key(i), Key(i));
  EXPECT_EQ(map.Capacity(), 2 * page);
  for (unsigned i : {1U, page - 1, page, page + 1}) EXPECT_EQ(map.GetValue(Key(i)), Key(i)) << i;
  EXPECT_EQ(map.GetItemAt(page)->Key(), Key(page + 1));
  EXPECT_EQ(map.IndexOfItem(map.GetItem(Key(page + 1))), page);

  map.Remove(Key(7));
  EXPECT_EQ(map.IndexOfItem(map.GetItem(Key(page + 1))), page - 1) << "free slots of lower pages count";
  EXPECT_DEATH(map.GetItem(Key(7)), "");
  unsigned walked = 0;
  for (MapIter iter(&map); iter.Item(nullptr, nullptr); iter.Next()) walked++;
  EXPECT_EQ(walked, page);

  map.Reset();
  EXPECT_EQ(map.Size(), 0U);
  EXPECT_EQ(map.Capacity(), 2 * page);
}

TEST(GigaMap, StartsInPagesWhenAskedForMoreThanOne) {
  GigaMap map(HASH_NUM, page + 5);
  EXPECT_EQ(map.Capacity(), page + 5);
  EXPECT_GT(map.MemUsage(), 2UL * page * sizeof(MapItem));
  map.Insert(Key(page + 4), Key(1));
  EXPECT_EQ(map.GetValue(Key(page + 4)), Key(1));
}

} // namespace
