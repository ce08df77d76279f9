// Heap: a binary heap of nodes that know their own place. The root has one real child, because the children of node i
// stand at 2i and 2i+1; callers see the order that follows from it. It owns no node.
#ifndef KESTRIN_CONTAINERS_HEAP_H
#define KESTRIN_CONTAINERS_HEAP_H

class Array;

class HeapNode {
public:
  HeapNode() = default;
  HeapNode(const HeapNode&) = delete;
  HeapNode& operator=(const HeapNode&) = delete;
  virtual ~HeapNode() = default;

  /// Non-zero when this node must lie above the other.
  virtual int Cmp(HeapNode* other) = 0;
  virtual int Index() const = 0;
  virtual void SetIndex(int index) = 0;
  virtual unsigned long MemUsage() const = 0;
};

/// A node with an unsigned key, the largest on top, and an item that it does not own.
class UnsignedHeapNode : public HeapNode {
public:
  UnsignedHeapNode(unsigned key, void* item) : _key(key), _item(item) {}

  int Cmp(HeapNode* other) override { return _key > static_cast<UnsignedHeapNode*>(other)->_key; }
  int Index() const override { return _index; }
  void SetIndex(int index) override { _index = index; }
  unsigned long MemUsage() const override { return sizeof(*this); }
  virtual void* Item() const { return _item; }
  unsigned Key() const { return _key; }

private:
  int _index = -1;
  unsigned _key;
  void* _item;
};

class Heap {
public:
  /// Room for `size` nodes, 2 when 0. The nodes of an array are stored and numbered, yet the heap reads as empty: it is
  /// filled through Insert.
  explicit Heap(int size = 2, Array* nodes = nullptr);
  Heap(const Heap&) = delete;
  Heap& operator=(const Heap&) = delete;
  ~Heap();

  void Insert(HeapNode* node);
  HeapNode* ExtractRoot() { return Remove(0); }
  /// Null out of range. The last node fills the hole and is sifted down, never up.
  HeapNode* Remove(int index);
  HeapNode* At(int index) const;
  /// 0 out of range, else 1 and the node.
  int Item(int index, HeapNode** node) const;
  int Size() const { return _size; }
  /// Sifts a node down; a tie moves nothing.
  void Heapify(int index);
  /// Cuts the heap; the nodes cut off lose their index and are not deleted.
  void ReSize(int size);
  void Reset() { ReSize(0); }
  double Load() const { return _max_size ? static_cast<double>(_size) / _max_size : 0.0; }
  unsigned long MemUsage() const;

private:
  int Best(int index) const;

  int _size = 0;
  int _max_size;
  HeapNode** _nodes;
};

#endif
