#include "containers/heap.h"

#include <algorithm>

#include "containers/array.h"

Heap::Heap(int size, Array* nodes) : _max_size(size > 0 ? size : 2), _nodes(new HeapNode* [_max_size] {}) {
  if (!nodes) return;
  KESTRIN_ASSERT_TEXT(nodes->Size() <= static_cast<unsigned>(_max_size), "nodes->Size() <= (unsigned)_max_size");
  void* item = nullptr;
  for (unsigned i = 0; nodes->Item(i, &item); i++) {
    _nodes[i] = static_cast<HeapNode*>(item);
    _nodes[i]->SetIndex(static_cast<int>(i));
  }
  for (int i = static_cast<int>(nodes->Size() / 2); i >= 1; i--) Heapify(i);
}

Heap::~Heap() { delete[] _nodes; }

void Heap::Insert(HeapNode* node) {
  KESTRIN_ASSERT(node);
  if (_size == _max_size) {
    auto** nodes = new HeapNode* [2 * static_cast<unsigned>(_max_size)] {};
    std::copy(_nodes, _nodes + _size, nodes);
    delete[] _nodes;
    _nodes = nodes;
    _max_size *= 2;
  }
  int hole = _size++;
  while (hole > 0 && node->Cmp(_nodes[hole / 2])) {
    _nodes[hole] = _nodes[hole / 2];
    _nodes[hole]->SetIndex(hole);
    hole /= 2;
  }
  _nodes[hole] = node;
  node->SetIndex(hole);
}

int Heap::Best(int index) const {
  int best = index;
  for (int child = 2 * index; child <= 2 * index + 1; child++)
    if (child < _size && child != best && _nodes[child]->Cmp(_nodes[best])) best = child;
  return best;
}

void Heap::Heapify(int index) {
  if (index < 0) return;
  while (index < _size) {
    int best = Best(index);
    if (best == index) return;
    std::swap(_nodes[index], _nodes[best]);
    _nodes[index]->SetIndex(index);
    _nodes[best]->SetIndex(best);
    index = best;
    if (index == 0) return;
  }
}

HeapNode* Heap::Remove(int index) {
  if (index < 0 || index >= _size) return nullptr;
  HeapNode* node = _nodes[index];
  node->SetIndex(-1);
  _size--;
  if (index != _size) {
    _nodes[index] = _nodes[_size];
    _nodes[index]->SetIndex(index);
    _nodes[_size] = nullptr;
    Heapify(index);
  } else
    _nodes[index] = nullptr;
  return node;
}

HeapNode* Heap::At(int index) const { return index < 0 || index >= _size ? nullptr : _nodes[index]; }

int Heap::Item(int index, HeapNode** node) const {
  if (index < 0 || index >= _size) return 0;
  *node = _nodes[index];
  return 1;
}

void Heap::ReSize(int size) {
  for (int i = std::max(size, 0); i < _size; i++) {
    _nodes[i]->SetIndex(-1);
    _nodes[i] = nullptr;
  }
  _size = std::min(std::max(size, 0), _max_size);
}

unsigned long Heap::MemUsage() const {
  return sizeof(Heap) + static_cast<unsigned long>(_max_size) * sizeof(HeapNode*);
}
