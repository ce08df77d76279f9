#include "containers/set.h"

#include <cstring>

Set::Set(hash_type type, unsigned size) : Set(Hash::Function(type), size) {}

Set::Set(hash_function hash, unsigned size) : _hash(hash) { Allocate(size ? size : 2); }

Set::Set(const Set& other) : _hash(other._hash) {
  Allocate(other._num_buckets);
  _size = other._size;
  _entry_size = other._entry_size;
  for (unsigned slot = _entry_size; slot-- > 0;) {
    SetItem* item = _entries + slot;
    item->_key = other._entries[slot]._key;
    if (item->_key)
      Chain(item);
    else
      Free(item);
  }
}

Set::~Set() {
  delete[] _buckets;
  delete[] _entries;
}

void Set::Allocate(unsigned num_buckets) {
  _num_buckets = num_buckets;
  _entries = new SetItem[num_buckets];
  _buckets = num_buckets < min_buckets ? nullptr : new SetItem* [num_buckets] {};
}

void Set::Chain(SetItem* item) {
  if (!_buckets) return;
  SetItem*& head = _buckets[Hash::Of(_hash, item->_key) % _num_buckets];
  item->_next = head;
  head = item;
}

void Set::Free(SetItem* item) {
  item->_key = nullptr;
  item->_next = _garbage;
  _garbage = item;
}

SetItem* Set::Find(const void* key) const {
  if (!key) return nullptr;
  if (_buckets) {
    for (SetItem* item = _buckets[Hash::Of(_hash, key) % _num_buckets]; item; item = item->_next)
      if (Matches(*item, key)) return item;
    return nullptr;
  }
  for (unsigned slot = _entry_size; slot-- > 0;)
    if (_entries[slot]._key && Matches(_entries[slot], key)) return _entries + slot;
  return nullptr;
}

void* Set::GetItem(const void* key) const {
  SetItem* item = Find(key);
  return item ? const_cast<void*>(item->_key) : nullptr;
}

unsigned Set::Insert(const void* key, unsigned force_overwrite) {
  if (!key) return 0;
  if (_size == _num_buckets) Rehash();
  if (SetItem* found = Find(key)) {
    if (force_overwrite) found->_key = key;
    return 0;
  }
  SetItem* item = _garbage;
  if (item)
    _garbage = item->_next;
  else
    item = _entries + _entry_size++;
  item->_key = key;
  item->_next = nullptr;
  Chain(item);
  _size++;
  return 1;
}

unsigned Set::Remove(const void* key) {
  SetItem* item = Find(key);
  if (!item) return 0;
  if (_buckets) {
    SetItem** link = &_buckets[Hash::Of(_hash, item->_key) % _num_buckets];
    while (*link != item) link = &(*link)->_next;
    *link = item->_next;
  }
  Free(item);
  _size--;
  return 1;
}

void* Set::GetAt(unsigned idx) const {
  KESTRIN_ASSERT_TEXT(idx < _size, "idx < _size");
  if (!_garbage) return const_cast<void*>(_entries[idx]._key);
  if (idx <= _size / 2) {
    for (unsigned slot = 0, left = idx; slot < _entry_size; slot++)
      if (_entries[slot]._key && !left--) return const_cast<void*>(_entries[slot]._key);
    return nullptr;
  }
  for (unsigned slot = _entry_size, left = _size - 1 - idx; slot-- > 0;)
    if (_entries[slot]._key && !left--) return const_cast<void*>(_entries[slot]._key);
  return nullptr;
}

void* Set::GetLast() const { return _size ? GetAt(_size - 1) : nullptr; }

unsigned Set::IndexOfItem(const void* key) const {
  const SetItem* item = Find(key);
  if (!item) return 0;
  auto index = static_cast<unsigned>(item - _entries);
  for (const SetItem* hole = _garbage; hole; hole = hole->_next) index -= hole < item;
  return index;
}

void Set::Reset() {
  if (_buckets) std::memset(_buckets, 0, _num_buckets * sizeof(SetItem*));
  _garbage = nullptr;
  for (unsigned slot = _entry_size; slot-- > 0;) Free(_entries + slot);
  _size = 0;
}

unsigned long Set::MemUsage() const {
  return sizeof(Set) + _num_buckets * sizeof(SetItem) + (_buckets ? _num_buckets * sizeof(SetItem*) : 0);
}

void Set::Rehash() {
  KESTRIN_ASSERT_TEXT(_entry_size == _size && !_garbage, "_entry_size==_size");
  SetItem* old = _entries;
  delete[] _buckets;
  Allocate(2 * _num_buckets + 1);
  for (unsigned slot = 0; slot < _entry_size; slot++) _entries[slot]._key = old[slot]._key;
  delete[] old;
  for (unsigned slot = _entry_size; slot-- > 0;) Chain(_entries + slot);
}

void SetIter::SkipHoles() {
  while (_idx < _map->_entry_size && IsHole()) _idx++;
}

void SetIter::First(const Set* set) {
  _map = set;
  _idx = _position = 0;
  if (_map) SkipHoles();
}

void SetIter::Last(const Set* set) {
  _map = set;
  _idx = _position = 0;
  if (!_map) return;
  _idx = _map->_entry_size;
  if (!_map->_size) return;
  _position = _map->_size - 1;
  do _idx--;
  while (IsHole());
}

unsigned SetIter::Next() {
  if (!_map || _idx >= _map->_entry_size) return _position;
  _idx++;
  SkipHoles();
  return ++_position;
}

unsigned SetIter::Previous() {
  if (!_map || _idx >= _map->_entry_size) return _position;
  do {
    if (_idx == 0) {
      _idx = _map->_entry_size; // below slot 0 the walk is finished, as it is behind the last one
      return _position = 0;
    }
    _idx--;
  } while (IsHole());
  return --_position;
}

unsigned SetIter::Item(void** key) const {
  if (!_map || _idx >= _map->_entry_size) return 0;
  if (key) *key = const_cast<void*>(_map->_entries[_idx].Key());
  return 1;
}
