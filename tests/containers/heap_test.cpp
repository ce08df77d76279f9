// Heap: the layout with one child at the root, and what follows from it for insertion and removal.
#include "containers/heap.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <vector>

#include "containers/array.h"
#include "containers/views.h"

namespace {

// A node whose comparisons are counted.
class CountingNode : public UnsignedHeapNode {
public:
  explicit CountingNode(unsigned key) : UnsignedHeapNode(key, nullptr) {}
  int Cmp(HeapNode* other) override {
    comparisons++;
    return UnsignedHeapNode::Cmp(other);
  }
  static int comparisons;
};
int CountingNode::comparisons = 0;

struct Nodes {
  std::deque<CountingNode> nodes;
  Heap heap;
  explicit Nodes(std::initializer_list<unsigned> keys) {
    for (unsigned key : keys) heap.Insert(&nodes.emplace_back(key));
  }
};

unsigned KeyAt(const Heap& heap, int index) { return static_cast<UnsignedHeapNode*>(heap.At(index))->Key(); }

std::vector<unsigned> Keys(const Heap& heap) {
  std::vector<unsigned> keys;
  for (int i = 0; i < heap.Size(); i++) keys.push_back(KeyAt(heap, i));
  return keys;
}

TEST(Heap, GivesTheLargestKeyFirst) {
  Nodes nodes{5, 1, 9, 7, 3, 8, 2};
  std::vector<unsigned> keys;
  while (HeapNode* node = nodes.heap.ExtractRoot()) {
    EXPECT_EQ(node->Index(), -1);
    keys.push_back(static_cast<UnsignedHeapNode*>(node)->Key());
  }
  EXPECT_EQ(keys.front(), 9U);
  EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end(), std::greater<>()));
}

TEST(Heap, TheRootHasOneChildAndNodesKnowTheirPlace) {
  Nodes nodes{1, 2, 3, 4};
  EXPECT_EQ(Keys(nodes.heap), (std::vector<unsigned>{4, 3, 1, 2}));
  for (int i = 0; i < nodes.heap.Size(); i++) EXPECT_EQ(nodes.heap.At(i)->Index(), i);
}

TEST(Heap, EqualKeysStayWhereTheyAre) {
  Nodes nodes{4, 4, 4};
  for (int i = 0; i < 3; i++) EXPECT_EQ(nodes.heap.At(i), &nodes.nodes[static_cast<size_t>(i)]);
}

TEST(Heap, RemovingTheLastNodeComparesNothing) {
  Nodes nodes{9, 8, 7, 6};
  CountingNode::comparisons = 0;
  EXPECT_EQ(nodes.heap.Remove(3), &nodes.nodes[3]);
  EXPECT_EQ(CountingNode::comparisons, 0);
  EXPECT_EQ(nodes.heap.Size(), 3);
}

TEST(Heap, RemovingInTheMiddleNeverSiftsUp) {
  Nodes nodes{100, 90, 10, 50, 5, 4, 45, 40};
  EXPECT_EQ(nodes.heap.Remove(4), &nodes.nodes[4]);
  EXPECT_EQ(nodes.nodes[4].Index(), -1);
  EXPECT_EQ(KeyAt(nodes.heap, 2), 10U);
  EXPECT_EQ(KeyAt(nodes.heap, 4), 40U) << "the last node fills the hole below a smaller parent";
}

TEST(Heap, ANodeThatFillsAHoleSiftsDown) {
  Nodes nodes{100, 90, 80, 70, 60, 50};
  nodes.heap.ExtractRoot();
  EXPECT_EQ(Keys(nodes.heap), (std::vector<unsigned>{90, 80, 60, 70, 50}));
}

TEST(Heap, OutOfRangeIsNull) {
  Nodes nodes{1};
  HeapNode* node = nullptr;
  EXPECT_EQ(nodes.heap.At(-1), nullptr);
  EXPECT_EQ(nodes.heap.At(1), nullptr);
  EXPECT_EQ(nodes.heap.Remove(1), nullptr);
  EXPECT_EQ(nodes.heap.Remove(-1), nullptr);
  EXPECT_EQ(nodes.heap.Item(1, &node), 0);
  EXPECT_EQ(nodes.heap.Item(0, &node), 1);
  EXPECT_EQ(node, &nodes.nodes[0]);
  nodes.heap.Heapify(-1);
  EXPECT_DEATH(nodes.heap.Insert(nullptr), "");
}

TEST(Heap, CuttingOffNodesTakesTheirPlaceAway) {
  Nodes nodes{9, 8, 7, 6, 5};
  nodes.heap.ReSize(2);
  EXPECT_EQ(Keys(nodes.heap), (std::vector<unsigned>{9, 8}));
  EXPECT_EQ(nodes.nodes[3].Index(), -1);
  nodes.heap.Reset();
  EXPECT_EQ(nodes.heap.Size(), 0);
  EXPECT_EQ(nodes.heap.ExtractRoot(), nullptr);
}

TEST(Heap, AHeapMadeFromAnArrayReadsAsEmpty) {
  CountingNode a(1);
  CountingNode b(2);
  Array array(2);
  array.Insert(ToWord<HeapNode*>(&a));
  array.Insert(ToWord<HeapNode*>(&b));
  Heap heap(0, &array);
  EXPECT_EQ(heap.Size(), 0);
  EXPECT_EQ(a.Index(), 0);
  EXPECT_EQ(b.Index(), 1);
  EXPECT_DEATH(Heap(1, &array), "nodes->Size\\(\\) <= \\(unsigned\\)_max_size");
}

} // namespace
