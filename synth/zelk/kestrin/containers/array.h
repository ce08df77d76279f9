// Array: a growable vector of machine words, the plainest of the kernel's containers. It owns nothing that it points at
// and uses nothing but assertions.
#ifndef KESTRIN_CONTAINERS_ARRAY_H
#define KESTRIN_CONTAINERS_ARRAY_H

#include "containers/assertion.h"
#include "containers/pool.h"

class Array : public Pooled {
public:
  /// Empty, with room for `size` elements (at least one).
  explicit Array(unsigned size = 2);
  /// `size` elements (at least one), all `fill`.
  Array(unsigned size, void* fill);
  Array(const Array& other);
  /// The elements from the lower to the higher of the two positions, in ascending order whichever comes first.
  Array(const Array& other, unsigned from, unsigned to);
  Array& operator=(const Array&) = delete;
  virtual ~Array();

  unsigned Size() const { return _size; }
  unsigned Capacity() const { return _max_size; }

  void Insert(void* item) { InsertLast(item); }
  void InsertLast(void* item) {
    if (_size == _max_size) Grow();
    _items[_size++] = item;
  }
  /// Stores at a position: overwrites below the size, appends at the size, fails above it. Nothing is shifted.
  void Insert(unsigned pos, void* item);
  void InsertFirst(void* item) { InsertBefore(0, item); }
  void InsertBefore(unsigned pos, void* item);
  void InsertAfter(unsigned pos, void* item) { InsertBefore(pos + 1, item); }
  /// Overwrites elements with those of a slice, which must fit; a null or empty slice does nothing.
  void Insert(const Array* slice, unsigned from);

  void Append(const Array* other);
  void Prepend(const Array* other);

  /// Closes the gap; the capacity stays.
  void Remove(unsigned pos, unsigned num = 1);
  void* RemoveLast();

  void* At(unsigned pos) const {
    KESTRIN_ASSERT_TEXT(pos < _size, "pos < _size");
    return _items[pos];
  }
  void* GetFirst() const;
  void* GetLast() const;

  /// The step of every walk: 0 at or past the end, else 1 and the element. An array may grow during a walk.
  unsigned Item(unsigned i, void** out) const {
    if (i >= _size) return 0;
    *out = _items[i];
    return 1;
  }

  /// Size 0 keeps the storage whatever `shrink` says; growth is to exactly `size`, new elements are `fill`.
  void ReSize(unsigned size, void* fill = nullptr, unsigned shrink = 0);
  void Reset() { _size = 0; }
  void Reverse();

  double Load() const { return _max_size ? static_cast<double>(_size) / _max_size : 0.0; }
  unsigned long MemUsage() const { return sizeof(Array) + _max_size * sizeof(void*); }

private:
  void Grow() { Reallocate(_max_size ? 2 * _max_size : 1); }
  void Reallocate(unsigned capacity);

  void** _items;
  unsigned _max_size;
  unsigned _size;
};

#endif
