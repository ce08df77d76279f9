#include "containers/array.h"

#include "containers/pool.h"

#include <algorithm>
#include <cstring>

namespace {

void** AllocateWords(unsigned count) { return static_cast<void**>(kestrin_pool_allocate(count * sizeof(void*))); }
void FreeWords(void** words, unsigned count) { kestrin_pool_free(words, count * sizeof(void*)); }

void MoveWords(void** to, void* const* from, unsigned count) {
  if (count) std::memmove(to, from, count * sizeof(void*));
}

} // namespace

Array::Array(unsigned size) : _items(AllocateWords(std::max(size, 1U))), _max_size(std::max(size, 1U)), _size(0) {}

Array::Array(unsigned size, void* fill) : _items(nullptr), _max_size(size), _size(size) {
  KESTRIN_ASSERT(size);
  _items = AllocateWords(size);
  std::fill_n(_items, size, fill);
}

Array::Array(const Array& other)
    : _items(AllocateWords(std::max(other._size, 1U))), _max_size(std::max(other._size, 1U)), _size(other._size) {
  MoveWords(_items, other._items, _size);
}

Array::Array(const Array& other, unsigned from, unsigned to) : _items(nullptr), _max_size(0), _size(0) {
  unsigned low = std::min(from, to);
  unsigned high = std::max(from, to);
  KESTRIN_ASSERT_TEXT(high < other._size, "pos < _size");
  _size = _max_size = high - low + 1;
  _items = AllocateWords(_max_size);
  MoveWords(_items, other._items + low, _size);
}

Array::~Array() { FreeWords(_items, _max_size); }

void Array::Reallocate(unsigned capacity) {
  void** items = AllocateWords(capacity);
  MoveWords(items, _items, std::min(_size, capacity));
  FreeWords(_items, _max_size);
  _items = items;
  _max_size = capacity;
}

void Array::Insert(unsigned pos, void* item) {
  if (pos < _size) {
    _items[pos] = item;
    return;
  }
  KESTRIN_ASSERT_TEXT(pos == _size, "pos == _size");
  InsertLast(item);
}

void Array::InsertBefore(unsigned pos, void* item) {
  KESTRIN_ASSERT_TEXT(pos <= _size, "pos <= _size");
  if (_size == _max_size) Grow();
  MoveWords(_items + pos + 1, _items + pos, _size - pos);
  _items[pos] = item;
  _size++;
}

void Array::Insert(const Array* slice, unsigned from) {
  if (!slice || !slice->_size) return;
  KESTRIN_ASSERT_TEXT(slice->_size + from <= _size, "(slice->_size + from) <= _size");
  MoveWords(_items + from, slice->_items, slice->_size);
}

void Array::Append(const Array* other) {
  if (!other) return;
  unsigned more = other->_size;
  if (_size + more > _max_size) Reallocate(_size + more);
  MoveWords(_items + _size, other->_items, more);
  _size += more;
}

void Array::Prepend(const Array* other) {
  if (!other) return;
  unsigned more = other->_size;
  if (_size + more > _max_size) Reallocate(_size + more);
  MoveWords(_items + more, _items, _size);
  MoveWords(_items, other == this ? _items + more : other->_items, more);
  _size += more;
}

void Array::Remove(unsigned pos, unsigned num) {
  if (!num) return;
  KESTRIN_ASSERT_TEXT(num <= _size && pos <= _size - num, "pos+num <= _size");
  MoveWords(_items + pos, _items + pos + num, _size - pos - num);
  _size -= num;
}

void* Array::RemoveLast() {
  KESTRIN_ASSERT(_size);
  return _items[--_size];
}

void* Array::GetFirst() const {
  KESTRIN_ASSERT(_size);
  return _items[0];
}

void* Array::GetLast() const {
  KESTRIN_ASSERT(_size);
  return _items[_size - 1];
}

void Array::ReSize(unsigned size, void* fill, unsigned shrink) {
  if (!size) {
    _size = 0;
    return;
  }
  unsigned old = _size;
  if (size > _max_size || (size < _size && shrink)) {
    _size = std::min(_size, size);
    Reallocate(size);
  }
  if (size > old) std::fill(_items + old, _items + size, fill);
  _size = size;
}

void Array::Reverse() { std::reverse(_items, _items + _size); }
