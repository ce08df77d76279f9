// Array: growth, storing and shifting, slices, walks.
#include "containers/array.h"

#include <gtest/gtest.h>

#include <vector>

#include "containers/views.h"

namespace {

Array Numbers(int count) {
  Array array(2);
  for (int i = 0; i < count; i++) array.Insert(ToWord(i));
  return array;
}

std::vector<int> Items(const Array& array) {
  std::vector<int> items;
  for (int item : ItemsOf<int>(&array)) items.push_back(item);
  return items;
}

using Ints = std::vector<int>;

TEST(Array, DoublesItsCapacityWhenFull) {
  Array array(0);
  EXPECT_EQ(array.Capacity(), 1U);
  std::vector<unsigned> capacities;
  for (int i = 0; i < 6; i++) {
    array.Insert(ToWord(i));
    capacities.push_back(array.Capacity());
  }
  EXPECT_EQ(capacities, (std::vector<unsigned>{1, 2, 4, 4, 8, 8}));
}

TEST(Array, StoreAtOverwritesAndShiftsNothing) {
  Array array = Numbers(3);
  array.Insert(2, ToWord(9));
  EXPECT_EQ(Items(array), (Ints{0, 1, 9}));
  array.Insert(3, ToWord(7));
  EXPECT_EQ(Items(array), (Ints{0, 1, 9, 7}));
  EXPECT_DEATH(array.Insert(5, ToWord(1)), "pos == _size");
}

TEST(Array, ShiftingInsertsKeepTheOthersInOrder) {
  Array array = Numbers(3);
  array.InsertFirst(ToWord(10));
  array.InsertBefore(2, ToWord(11));
  array.InsertAfter(4, ToWord(12));
  EXPECT_EQ(Items(array), (Ints{10, 0, 11, 1, 2, 12}));
}

TEST(Array, SliceOverwritesElementsAndMustFit) {
  Array array = Numbers(5);
  Array slice(2, ToWord(9));
  array.Insert(&slice, 3);
  EXPECT_EQ(Items(array), (Ints{0, 1, 2, 9, 9}));
  array.Insert(nullptr, 99);
  Array empty(4);
  array.Insert(&empty, 99);
  EXPECT_EQ(array.Size(), 5U);
  EXPECT_DEATH(array.Insert(&slice, 4), "slice->_size \\+ from");
}

TEST(Array, SliceIsAscendingWhicheverPositionComesFirst) {
  Array array = Numbers(8);
  EXPECT_EQ(Items(Array(array, 5, 2)), (Ints{2, 3, 4, 5}));
  EXPECT_EQ(Items(Array(array, 2, 5)), (Ints{2, 3, 4, 5}));
  EXPECT_EQ(Items(Array(array, 7, 7)), (Ints{7}));
}

TEST(Array, CopiesWithTheCapacityOfItsSize) {
  Array array = Numbers(3);
  Array copy(array);
  EXPECT_EQ(Items(copy), Items(array));
  EXPECT_EQ(copy.Capacity(), 3U);
  const Array empty(8);
  Array empty_copy(empty);
  EXPECT_EQ(empty_copy.Capacity(), 1U);
}

TEST(Array, AppendAndPrependGrowToTheExactSum) {
  Array array = Numbers(3);
  Array other(2, ToWord(9));
  array.Append(&other);
  EXPECT_EQ(Items(array), (Ints{0, 1, 2, 9, 9}));
  EXPECT_EQ(array.Capacity(), 5U);
  array.Prepend(&other);
  EXPECT_EQ(Items(array), (Ints{9, 9, 0, 1, 2, 9, 9}));
  EXPECT_EQ(array.Capacity(), 7U);
  array.Append(nullptr);
  array.Prepend(nullptr);
  EXPECT_EQ(array.Size(), 7U);
  array.Append(&array);
  EXPECT_EQ(array.Size(), 14U);
  EXPECT_EQ(FromWord<int>(array.At(9)), 0);
}

TEST(Array, RemovingClosesTheGapAndKeepsTheCapacity) {
  Array array = Numbers(6);
  unsigned capacity = array.Capacity();
  array.Remove(1, 3);
  EXPECT_EQ(Items(array), (Ints{0, 4, 5}));
  array.Remove(3, 0);
  EXPECT_EQ(FromWord<int>(array.RemoveLast()), 5);
  EXPECT_EQ(array.Capacity(), capacity);
  EXPECT_DEATH(array.Remove(1, 2), "pos\\+num <= _size");
}

TEST(Array, AccessOutsideFails) {
  Array array(4);
  EXPECT_DEATH(array.At(0), "pos < _size");
  EXPECT_DEATH(array.GetFirst(), "_size");
  EXPECT_DEATH(array.GetLast(), "_size");
  EXPECT_DEATH(array.RemoveLast(), "_size");
  EXPECT_DEATH(Array(0, nullptr), "");
}

TEST(Array, ResizingToZeroKeepsTheStorage) {
  Array array = Numbers(4);
  array.ReSize(0, nullptr, /*shrink=*/1);
  EXPECT_EQ(array.Size(), 0U);
  EXPECT_EQ(array.Capacity(), 4U);
}

TEST(Array, ResizingGrowsExactlyAndFillsTheTail) {
  Array array = Numbers(2);
  array.ReSize(7, ToWord(5));
  EXPECT_EQ(array.Capacity(), 7U);
  EXPECT_EQ(Items(array), (Ints{0, 1, 5, 5, 5, 5, 5}));
  array.ReSize(3);
  EXPECT_EQ(array.Capacity(), 7U);
  array.ReSize(4, ToWord(8));
  EXPECT_EQ(Items(array), (Ints{0, 1, 5, 8}));
  array.ReSize(2, nullptr, /*shrink=*/1);
  EXPECT_EQ(array.Capacity(), 2U);
  EXPECT_EQ(Items(array), (Ints{0, 1}));
}

TEST(Array, WalkSeesWhatIsAppendedDuringIt) {
  Array array = Numbers(2);
  int visited = 0;
  void* item = nullptr;
  for (unsigned i = 0; array.Item(i, &item); i++, visited++)
    if (visited < 3) array.Insert(item);
  EXPECT_EQ(visited, 5);
}

TEST(Array, ReportsLoadAndReverses) {
  Array array = Numbers(3);
  EXPECT_DOUBLE_EQ(array.Load(), 0.75);
  array.Reverse();
  EXPECT_EQ(Items(array), (Ints{2, 1, 0}));
  array.Reset();
  EXPECT_EQ(array.Capacity(), 4U);
  EXPECT_DOUBLE_EQ(array.Load(), 0.0);
}

} // namespace
