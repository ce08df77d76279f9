// Set and SetIter: the table of Map with one word less, keys without values. It owns nothing that it points at.
#ifndef KESTRIN_CONTAINERS_SET_H
#define KESTRIN_CONTAINERS_SET_H

#include "containers/assertion.h"
#include "containers/hash.h"

/// A slot of a Set, free exactly when the key is null.
class SetItem {
public:
  const void* Key() const { return _key; }

private:
  friend class Set;
  const void* _key = nullptr;
  SetItem* _next = nullptr;
};

class Set {
public:
  /// A request of 0 counts as 2.
  explicit Set(hash_type type = HASH_POINTER, unsigned size = 2);
  explicit Set(hash_function hash, unsigned size = 2);
  Set(const Set& other);
  Set& operator=(const Set&) = delete;
  virtual ~Set();

  unsigned Size() const { return _size; }
  unsigned Capacity() const { return _num_buckets; }
  /// 1 when added. A null key is refused; a key that is there stays, or is replaced by an equal one when told so.
  unsigned Insert(const void* key, unsigned force_overwrite = 0);
  unsigned Remove(const void* key);
  /// The stored key that equals `key`, or null.
  void* GetItem(const void* key) const;
  bool Contains(const void* key) const { return Find(key) != nullptr; }
  void* GetAt(unsigned idx) const;
  void* GetLast() const;
  /// Position among the live keys in iteration order, 0 when absent.
  unsigned IndexOfItem(const void* key) const;
  void Reset();
  double Load() const { return _num_buckets ? static_cast<double>(_size) / _num_buckets : 0.0; }
  unsigned long MemUsage() const;

  static constexpr unsigned FILL_RATE = 1;

private:
  friend class SetIter;
  static constexpr unsigned min_buckets = 6;

  SetItem* Find(const void* key) const;
  bool Matches(const SetItem& item, const void* key) const { return Hash::AreEqual(_hash, key, item._key); }
  void Allocate(unsigned num_buckets);
  void Chain(SetItem* item);
  void Free(SetItem* item);
  void Rehash();

  hash_function _hash;
  SetItem** _buckets = nullptr;
  unsigned _num_buckets = 0;
  unsigned _size = 0;
  unsigned _entry_size = 0;
  SetItem* _entries = nullptr;
  SetItem* _garbage = nullptr;
};

/// Walks the keys of a Set in slot order, with the guarantees of MapIter.
class SetIter {
public:
  SetIter() = default;
  explicit SetIter(const Set* set) { First(set); }

  void First(const Set* set);
  void Last(const Set* set);
  unsigned Next();
  unsigned Previous();
  /// 1 while on a key; the output may be null.
  unsigned Item(void** key) const;

private:
  bool IsHole() const { return !_map->_entries[_idx].Key(); }
  void SkipHoles();

  unsigned _idx = 0;
  unsigned _position = 0;
  const Set* _map = nullptr;
};

#endif
