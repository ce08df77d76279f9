// Map and GigaMap: chained hash tables of machine words whose items live in an entry table in the order in which they
// were first placed, and MapIter, which walks that table. Iteration order is behaviour: the order of messages, names
// and netlists comes from here. They own nothing that they point at.
#ifndef KESTRIN_CONTAINERS_MAP_H
#define KESTRIN_CONTAINERS_MAP_H

#include "containers/assertion.h"
#include "containers/hash.h"

/// A key and its value. A slot is free exactly when both are null.
class MapItem {
public:
  const void* Key() const { return _key; }
  const void* Value() const { return _value; }
  void* MutableValue() const { return const_cast<void*>(_value); }
  void SetValue(const void* value) { _value = value; }
  bool IsFree() const { return !_key && !_value; }

private:
  friend class Map;
  friend class GigaMap;
  friend class MapIter;
  const void* _key = nullptr;
  const void* _value = nullptr;
  MapItem* _next = nullptr; // of the same bucket while live, of the free list while free
};

class Map {
public:
  /// A request of 0 allocates nothing; the first insertion then makes one slot.
  explicit Map(hash_type type = HASH_POINTER, unsigned size = 2);
  /// A request of 0 counts as 2.
  explicit Map(hash_function hash, unsigned size = 2);
  /// Holes are copied too, so that order and positions are those of the original.
  Map(const Map& other);
  Map& operator=(const Map&) = delete;
  virtual ~Map();

  virtual unsigned Size() const { return _size; }
  /// Frees every slot, lowest first; the storage and the number of used slots stay.
  virtual void Reset();
  /// 1 when the key was not there before. A null key with a null value is refused. A key that is there is left alone
  /// unless `force_overwrite` replaces its item or `force_insert` adds a second item of the same key.
  virtual unsigned Insert(const void* key, const void* value, unsigned force_overwrite = 0, unsigned force_insert = 0);
  /// Removes the first item found of the key; 1 when there was one.
  virtual unsigned Remove(const void* key);
  virtual unsigned Remove(MapItem* item);
  /// Null when the key is absent.
  virtual MapItem* GetItem(const void* key) const;
  /// Null when the key is absent, and for a stored null.
  virtual void* GetValue(const void* key) const;
  /// By position among the live items, in iteration order.
  virtual MapItem* GetItemAt(unsigned idx) const;
  virtual void* GetValueAt(unsigned idx) const;
  /// Position of a key among the live items, 0 when it is absent.
  virtual unsigned IndexOf(const void* key) const;
  virtual unsigned IndexOfItem(const MapItem* item) const;
  /// The next item of the same key, or null.
  virtual MapItem* GetNextSameKeyItem(const MapItem* item) const;
  virtual unsigned long MemUsage() const;
  virtual unsigned IsGigaMap() const { return 0; }

  double Load() const { return _num_buckets ? static_cast<double>(_size) / _num_buckets : 0.0; }
  unsigned Capacity() const { return _num_buckets; }

  static constexpr unsigned FILL_RATE = 1;
  static constexpr unsigned page_bits = 20;
  static constexpr unsigned page_size = 1U << page_bits;

protected:
  /// Grows a full table.
  virtual void Rehash();

  friend class MapIter;

  /// Tables of fewer slots have no buckets and are searched from the newest slot to the oldest.
  static constexpr unsigned min_buckets = 6;

  bool Matches(const MapItem& item, const void* key) const { return Hash::AreEqual(_hash, key, item._key); }
  MapItem* SlotAt(unsigned slot) const {
    return _entry_pages ? _entry_pages[slot >> page_bits] + (slot & (page_size - 1)) : _entries + slot;
  }
  MapItem* TakeSlot();
  void Allocate(unsigned num_buckets);
  void Chain(MapItem* item);
  void ClearItem(MapItem* item);
  unsigned FreeSlotsBelow(const MapItem* item) const;

  hash_function _hash;
  MapItem** _buckets = nullptr;
  unsigned _num_buckets = 0;
  unsigned _size = 0;
  unsigned _entry_size = 0;
  MapItem* _entries = nullptr;
  MapItem** _entry_pages = nullptr; // of a GigaMap past its first page
  MapItem* _garbage = nullptr;
};

/// A Map that grows past 2^20 slots page by page, without one contiguous block and without copying it.
class GigaMap : public Map {
public:
  explicit GigaMap(hash_type type = HASH_POINTER, unsigned size = 2);
  explicit GigaMap(hash_function hash, unsigned size = 2);
  GigaMap(const GigaMap&) = delete;
  ~GigaMap() override;

  void Reset() override;
  unsigned Insert(const void* key, const void* value, unsigned force_overwrite = 0, unsigned force_insert = 0) override;
  unsigned Remove(const void* key) override;
  unsigned Remove(MapItem* item) override;
  /// In the paged form a miss is an assertion: ask only for keys that are present.
  MapItem* GetItem(const void* key) const override;
  MapItem* GetItemAt(unsigned idx) const override;
  unsigned IndexOfItem(const MapItem* item) const override;
  unsigned long MemUsage() const override;
  unsigned IsGigaMap() const override { return 1; }

protected:
  void Rehash() override;

private:
  void Setup(unsigned size);
  void AddPage();
  void GrowPageTables();
  MapItem*& BucketAt(unsigned long bucket) const {
    return _bucket_pages[bucket >> page_bits][bucket & (page_size - 1)];
  }
  void ChainPaged(MapItem* item);
  MapItem* FindPaged(const void* key) const;

  MapItem*** _bucket_pages = nullptr;
  unsigned _page_capacity = 0;
  unsigned _last_page = 0;
};

/// Walks the live items of a Map in slot order. It survives growth, and the removal of the current or any other item.
class MapIter {
public:
  MapIter() = default;
  explicit MapIter(const Map* map) { First(map); }

  void First(const Map* map) {
    _map = map;
    _idx = _position = 0;
    if (_map) SkipHoles();
  }
  void Last(const Map* map);
  /// Both return the new position, which counts the live items visited.
  unsigned Next() {
    if (!IsOnItem()) return _position;
    _idx++;
    SkipHoles();
    if (_map->_entry_size > fetch_distance && _idx < _map->_entry_size - fetch_distance)
      __builtin_prefetch(_map->SlotAt(_idx + fetch_distance)->_value);
    return ++_position;
  }
  unsigned Previous();
  /// 1 while on an item; either output may be null.
  unsigned Item(void** key, void** value) const {
    if (!IsOnItem()) return 0;
    const MapItem* item = Slot();
    if (key) *key = const_cast<void*>(item->Key());
    if (value) *value = item->MutableValue();
    return 1;
  }
  /// Replaces the value of the current item.
  void SetValue(void* value);

private:
  /// Walks over large tables look at each object: it is fetched into the cache while those before it are looked at.
  static constexpr unsigned fetch_distance = 8;

  bool IsOnItem() const { return _map && _idx < _map->_entry_size; }
  MapItem* Slot() const { return _map->SlotAt(_idx); }
  void SkipHoles() {
    while (_idx < _map->_entry_size && Slot()->IsFree()) _idx++;
  }

  unsigned _idx = 0;
  unsigned _position = 0;
  const Map* _map = nullptr;
};

#endif
