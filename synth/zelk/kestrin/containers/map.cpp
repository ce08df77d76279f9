#include "containers/map.h"

#include <cstring>

Map::Map(hash_type type, unsigned size) : _hash(Hash::Function(type)) {
  if (size) Allocate(size);
}

Map::Map(hash_function hash, unsigned size) : _hash(hash) { Allocate(size ? size : 2); }

Map::Map(const Map& other) : _hash(other._hash) {
  KESTRIN_ASSERT(!other.IsGigaMap());
  if (!other._num_buckets) return;
  Allocate(other._num_buckets);
  _size = other._size;
  _entry_size = other._entry_size;
  unsigned check_size = 0;
  for (unsigned slot = _entry_size; slot-- > 0;) {
    MapItem* item = _entries + slot;
    *item = other._entries[slot];
    item->_next = nullptr;
    if (item->IsFree()) {
      item->_next = _garbage;
      _garbage = item;
      continue;
    }
    check_size++;
    Chain(item);
  }
  KESTRIN_ASSERT(check_size == _size);
}

Map::~Map() {
  delete[] _buckets;
  delete[] _entries;
}

void Map::Allocate(unsigned num_buckets) {
  _num_buckets = num_buckets;
  _entries = new MapItem[num_buckets];
  _buckets = num_buckets < min_buckets ? nullptr : new MapItem* [num_buckets] {};
}

void Map::Chain(MapItem* item) {
  if (!_buckets) return;
  MapItem*& head = _buckets[Hash::Of(_hash, item->_key) % _num_buckets];
  item->_next = head;
  head = item;
}

void Map::Reset() {
  if (_buckets) std::memset(_buckets, 0, _num_buckets * sizeof(MapItem*));
  _garbage = nullptr;
  for (unsigned slot = _entry_size; slot-- > 0;) ClearItem(_entries + slot);
  _size = 0;
}

// Also pushes the slot on the free list.
void Map::ClearItem(MapItem* item) {
  item->_key = item->_value = nullptr;
  item->_next = _garbage;
  _garbage = item;
}

MapItem* Map::GetItem(const void* key) const {
  if (_buckets) {
    for (MapItem* item = _buckets[Hash::Of(_hash, key) % _num_buckets]; item; item = item->_next)
      if (Matches(*item, key)) return item;
    return nullptr;
  }
  for (unsigned slot = _entry_size; slot-- > 0;)
    if (!_entries[slot].IsFree() && Matches(_entries[slot], key)) return _entries + slot;
  return nullptr;
}

MapItem* Map::TakeSlot() {
  if (_garbage) {
    MapItem* item = _garbage;
    _garbage = item->_next;
    item->_next = nullptr;
    return item;
  }
  return SlotAt(_entry_size++);
}

unsigned Map::Insert(const void* key, const void* value, unsigned force_overwrite, unsigned force_insert) {
  if (!key && !value) return 0;
  if (_size == _num_buckets) Rehash();
  MapItem* found = GetItem(key);
  if (found && !force_insert) {
    if (force_overwrite) {
      found->_key = key;
      found->_value = value;
    }
    return 0;
  }
  MapItem* item = TakeSlot();
  item->_key = key;
  item->_value = value;
  Chain(item);
  _size++;
  return found ? 0 : 1;
}

unsigned Map::Remove(const void* key) { return Remove(Map::GetItem(key)); }

unsigned Map::Remove(MapItem* item) {
  if (!item) return 0;
  if (_buckets) {
    MapItem** link = &_buckets[Hash::Of(_hash, item->_key) % _num_buckets];
    while (*link && *link != item) link = &(*link)->_next;
    if (!*link) return 0;
    *link = item->_next;
  }
  ClearItem(item);
  _size--;
  return 1;
}

void* Map::GetValue(const void* key) const {
  if (!_size) return nullptr;
  MapItem* item = GetItem(key);
  return item ? item->MutableValue() : nullptr;
}

MapItem* Map::GetItemAt(unsigned idx) const {
  KESTRIN_ASSERT_TEXT(idx < _size, "idx < _size");
  if (_size == _entry_size) return _entries + idx;
  if (idx <= _size / 2) {
    for (unsigned slot = 0, left = idx; slot < _entry_size; slot++)
      if (!_entries[slot].IsFree() && !left--) return _entries + slot;
    return nullptr;
  }
  for (unsigned slot = _entry_size, left = _size - 1 - idx; slot-- > 0;)
    if (!_entries[slot].IsFree() && !left--) return _entries + slot;
  return nullptr;
}

void* Map::GetValueAt(unsigned idx) const {
  MapItem* item = GetItemAt(idx);
  return item ? item->MutableValue() : nullptr;
}

unsigned Map::IndexOf(const void* key) const { return _size ? IndexOfItem(GetItem(key)) : 0; }

unsigned Map::FreeSlotsBelow(const MapItem* item) const {
  unsigned count = 0;
  for (const MapItem* hole = _garbage; hole; hole = hole->_next) count += hole < item;
  return count;
}

unsigned Map::IndexOfItem(const MapItem* item) const {
  if (!item) return 0;
  return static_cast<unsigned>(item - _entries) - FreeSlotsBelow(item);
}

MapItem* Map::GetNextSameKeyItem(const MapItem* item) const {
  if (!item) return nullptr;
  if (_num_buckets >= min_buckets) {
    for (MapItem* next = item->_next; next; next = next->_next)
      if (Matches(*next, item->_key)) return next;
    return nullptr;
  }
  for (auto slot = static_cast<unsigned>(item - _entries); slot-- > 0;)
    if (!_entries[slot].IsFree() && Matches(_entries[slot], item->_key)) return _entries + slot;
  return nullptr;
}

unsigned long Map::MemUsage() const {
  return sizeof(Map) + _num_buckets * sizeof(MapItem) + (_buckets ? _num_buckets * sizeof(MapItem*) : 0);
}

void Map::Rehash() {
  KESTRIN_ASSERT_TEXT(_entry_size == _size, "_entry_size==_size");
  KESTRIN_ASSERT_TEXT(_entry_size == FILL_RATE * _num_buckets, "_entry_size==FILL_RATE*_num_buckets");
  KESTRIN_ASSERT(!_garbage);
  MapItem* old = _entries;
  delete[] _buckets;
  Allocate(2 * _num_buckets + 1);
  for (unsigned slot = 0; slot < _entry_size; slot++) {
    _entries[slot]._key = old[slot]._key;
    _entries[slot]._value = old[slot]._value;
  }
  delete[] old;
  for (unsigned slot = _entry_size; slot-- > 0;) Chain(_entries + slot);
}

GigaMap::GigaMap(hash_type type, unsigned size) : Map(type, 0) { Setup(size); }

GigaMap::GigaMap(hash_function hash, unsigned size) : Map(HASH_POINTER, 0) {
  _hash = hash;
  Setup(size);
}

void GigaMap::Setup(unsigned size) {
  if (!size) size = 2;
  if (size <= page_size) {
    Allocate(size);
    return;
  }
  unsigned pages = (size >> page_bits) + 1;
  _page_capacity = pages;
  _bucket_pages = new MapItem** [pages] {};
  _entry_pages = new MapItem* [pages] {};
  for (unsigned page = 0; page < pages; page++) {
    _bucket_pages[page] = new MapItem* [page_size] {};
    _entry_pages[page] = new MapItem[page_size];
  }
  _last_page = pages - 1;
  _num_buckets = size;
}

GigaMap::~GigaMap() {
  if (!_entry_pages) return;
  for (unsigned page = 0; page <= _last_page; page++) {
    delete[] _bucket_pages[page];
    delete[] _entry_pages[page];
  }
  delete[] _bucket_pages;
  delete[] _entry_pages;
  _buckets = nullptr; // page 0 held what the base class would free
  _entries = nullptr;
}

void GigaMap::ChainPaged(MapItem* item) {
  MapItem*& head = BucketAt(Hash::Of(_hash, item->_key) % _num_buckets);
  item->_next = head;
  head = item;
}

MapItem* GigaMap::FindPaged(const void* key) const {
  for (MapItem* item = BucketAt(Hash::Of(_hash, key) % _num_buckets); item; item = item->_next)
    if (Matches(*item, key)) return item;
  return nullptr;
}

MapItem* GigaMap::GetItem(const void* key) const {
  if (!_entry_pages) return Map::GetItem(key);
  MapItem* item = FindPaged(key);
  KESTRIN_ASSERT_TEXT(item, "item");
  return item;
}

unsigned GigaMap::Insert(const void* key, const void* value, unsigned force_overwrite, unsigned force_insert) {
  if (!key && !value) return 0;
  if (_size == _num_buckets) Rehash();
  if (!_entry_pages) return Map::Insert(key, value, force_overwrite, force_insert);
  MapItem* found = FindPaged(key);
  if (found && !force_insert) {
    if (force_overwrite) {
      found->_key = key;
      found->_value = value;
    }
    return 0;
  }
  MapItem* item = TakeSlot();
  item->_key = key;
  item->_value = value;
  ChainPaged(item);
  _size++;
  return found ? 0 : 1;
}

unsigned GigaMap::Remove(const void* key) { return _entry_pages ? Remove(FindPaged(key)) : Map::Remove(key); }

unsigned GigaMap::Remove(MapItem* item) {
  if (!_entry_pages) return Map::Remove(item);
  if (!item) return 0;
  MapItem** link = &BucketAt(Hash::Of(_hash, item->_key) % _num_buckets);
  while (*link && *link != item) link = &(*link)->_next;
  if (!*link) return 0;
  *link = item->_next;
  ClearItem(item);
  _size--;
  return 1;
}

void GigaMap::Reset() {
  if (!_entry_pages) {
    Map::Reset();
    return;
  }
  for (unsigned page = 0; page <= _last_page; page++) std::memset(_bucket_pages[page], 0, page_size * sizeof(MapItem*));
  _garbage = nullptr;
  for (unsigned slot = _entry_size; slot-- > 0;) ClearItem(SlotAt(slot));
  _size = 0;
}

MapItem* GigaMap::GetItemAt(unsigned idx) const {
  if (!_entry_pages) return Map::GetItemAt(idx);
  KESTRIN_ASSERT_TEXT(idx < _size, "idx < _size");
  if (_size == _entry_size) return SlotAt(idx);
  MapItem* page = _entry_pages[idx >> page_bits];
  unsigned position = idx & (page_size - 1);
  unsigned used =
      (idx >> page_bits) == ((_entry_size - 1) >> page_bits) ? ((_entry_size - 1) & (page_size - 1)) + 1 : page_size;
  if (position <= page_size / 2) {
    for (unsigned slot = 0, left = position; slot < used; slot++)
      if (!page[slot].IsFree() && !left--) return page + slot;
    return nullptr;
  }
  unsigned live = 0;
  for (unsigned slot = 0; slot < used; slot++) live += !page[slot].IsFree();
  if (position >= live) return nullptr;
  for (unsigned slot = used, left = live - 1 - position; slot-- > 0;)
    if (!page[slot].IsFree() && !left--) return page + slot;
  return nullptr;
}

unsigned GigaMap::IndexOfItem(const MapItem* item) const {
  if (!_entry_pages) return Map::IndexOfItem(item);
  if (!item) return 0;
  for (unsigned page = 0; page <= _last_page; page++) {
    const MapItem* first = _entry_pages[page];
    if (item < first || item >= first + page_size) continue;
    auto slot = static_cast<unsigned>(item - first);
    unsigned holes = 0;
    for (unsigned lower = 0; lower < page; lower++)
      for (unsigned at = 0; at < page_size; at++) holes += _entry_pages[lower][at].IsFree();
    for (unsigned at = 0; at < slot; at++) holes += first[at].IsFree();
    return (page << page_bits) + slot - holes;
  }
  return 0;
}

unsigned long GigaMap::MemUsage() const {
  if (!_entry_pages) return Map::MemUsage();
  return sizeof(GigaMap) + (_last_page + 1UL) * page_size * (sizeof(MapItem) + sizeof(MapItem*)) +
         _page_capacity * 2UL * sizeof(void*);
}

void GigaMap::GrowPageTables() {
  unsigned capacity = _page_capacity * 2;
  auto* bucket_pages = new MapItem** [capacity] {};
  auto* entry_pages = new MapItem* [capacity] {};
  std::memcpy(bucket_pages, _bucket_pages, _page_capacity * sizeof(MapItem**));
  std::memcpy(entry_pages, _entry_pages, _page_capacity * sizeof(MapItem*));
  delete[] _bucket_pages;
  delete[] _entry_pages;
  _bucket_pages = bucket_pages;
  _entry_pages = entry_pages;
  _page_capacity = capacity;
}

void GigaMap::AddPage() {
  if (_last_page + 1 == _page_capacity) GrowPageTables();
  _last_page++;
  _bucket_pages[_last_page] = new MapItem* [page_size] {};
  _entry_pages[_last_page] = new MapItem[page_size];
  _num_buckets += page_size;
}

void GigaMap::Rehash() {
  if (!_entry_pages && _num_buckets < page_size) {
    KESTRIN_ASSERT_TEXT(_entry_size == _size && !_garbage, "_entry_size==_size");
    MapItem* old = _entries;
    delete[] _buckets;
    Allocate(2 * _num_buckets + 1 < page_size ? 2 * _num_buckets + 1 : page_size);
    for (unsigned slot = 0; slot < _entry_size; slot++) {
      _entries[slot]._key = old[slot]._key;
      _entries[slot]._value = old[slot]._value;
    }
    delete[] old;
    for (unsigned slot = _entry_size; slot-- > 0;) Chain(_entries + slot);
    return;
  }
  if (!_entry_pages) {
    _page_capacity = 2;
    _bucket_pages = new MapItem** [2] {};
    _entry_pages = new MapItem* [2] {};
    _bucket_pages[0] = _buckets;
    _entry_pages[0] = _entries;
    _last_page = 0;
  }
  AddPage();
  for (unsigned page = 0; page <= _last_page; page++) std::memset(_bucket_pages[page], 0, page_size * sizeof(MapItem*));
  for (unsigned slot = _entry_size; slot-- > 0;) ChainPaged(SlotAt(slot));
}

void MapIter::Last(const Map* map) {
  _map = map;
  _idx = _position = 0;
  if (!_map) return;
  _idx = _map->_entry_size;
  if (!_map->_size) return;
  _position = _map->_size - 1;
  do _idx--;
  while (Slot()->IsFree());
}

unsigned MapIter::Previous() {
  if (!IsOnItem()) return _position;
  do {
    if (_idx == 0) {
      _idx = _map->_entry_size; // below slot 0 the walk is finished, as it is behind the last one
      return _position = 0;
    }
    _idx--;
  } while (Slot()->IsFree());
  return --_position;
}

void MapIter::SetValue(void* value) {
  KESTRIN_ASSERT_TEXT(IsOnItem(), "_map && _idx<_map->_entry_size");
  Slot()->SetValue(value);
}
