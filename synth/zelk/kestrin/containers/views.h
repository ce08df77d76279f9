// Typed faces of the untyped containers: ranges for `for` loops and casts in one place. They hold no state of their
// own, compile to the same loops and survive what the iterators survive: growth, and deletion of the current item.
#ifndef KESTRIN_CONTAINERS_VIEWS_H
#define KESTRIN_CONTAINERS_VIEWS_H

#include <cstdint>
#include <type_traits>
#include <utility>

#include "containers/array.h"
#include "containers/map.h"
#include "containers/set.h"

/// A machine word as a typed value: a pointer, or an integer or enumeration stored by value.
template <class T> T FromWord(const void* word) {
  if constexpr (std::is_pointer_v<T>)
    return static_cast<T>(const_cast<void*>(word));
  else
    return static_cast<T>(reinterpret_cast<intptr_t>(word));
}

template <class T> void* ToWord(T value) {
  if constexpr (std::is_pointer_v<T>)
    return const_cast<void*>(static_cast<const void*>(value));
  else
    return reinterpret_cast<void*>(static_cast<intptr_t>(value)); // NOLINT(performance-no-int-to-ptr)
}

struct RangeEnd {};

/// The elements of an Array; a null array is empty, and what is appended during the walk is seen.
template <class T> class ItemsOf {
public:
  explicit ItemsOf(const Array* array) : _array(array) {}
  class iterator {
  public:
    explicit iterator(const Array* array) : _array(array) {}
    T operator*() const { return FromWord<T>(_array->At(_pos)); }
    iterator& operator++() {
      _pos++;
      return *this;
    }
    bool operator!=(RangeEnd) const { return _array && _pos < _array->Size(); }

  private:
    const Array* _array;
    unsigned _pos = 0;
  };
  iterator begin() const { return iterator(_array); }
  RangeEnd end() const { return {}; }

private:
  const Array* _array;
};

/// The entries of a Map as pairs of key and value; the next entry is looked up when it is asked for.
template <class K, class V> class Entries {
public:
  explicit Entries(const Map* map) : _map(map) {}
  explicit Entries(const Map& map) : _map(&map) {}
  class iterator {
  public:
    explicit iterator(const Map* map) : _iter(map) {}
    std::pair<K, V> operator*() const {
      void* key = nullptr;
      void* value = nullptr;
      _iter.Item(&key, &value);
      return {FromWord<K>(key), FromWord<V>(value)};
    }
    iterator& operator++() {
      _iter.Next();
      return *this;
    }
    bool operator!=(RangeEnd) const { return _iter.Item(nullptr, nullptr); }

  private:
    MapIter _iter;
  };
  iterator begin() const { return iterator(_map); }
  RangeEnd end() const { return {}; }

private:
  const Map* _map;
};

/// The values alone, or the keys alone.
template <class V> class ValuesOf {
public:
  explicit ValuesOf(const Map* map) : _map(map) {}
  class iterator {
  public:
    explicit iterator(const Map* map) : _iter(map) {}
    V operator*() const {
      void* value = nullptr;
      _iter.Item(nullptr, &value);
      return FromWord<V>(value);
    }
    iterator& operator++() {
      _iter.Next();
      return *this;
    }
    bool operator!=(RangeEnd) const { return _iter.Item(nullptr, nullptr); }

  private:
    MapIter _iter;
  };
  iterator begin() const { return iterator(_map); }
  RangeEnd end() const { return {}; }

private:
  const Map* _map;
};

/// The keys of a Set.
template <class K> class KeysOf {
public:
  explicit KeysOf(const Set* set) : _set(set) {}
  class iterator {
  public:
    explicit iterator(const Set* set) : _iter(set) {}
    K operator*() const {
      void* key = nullptr;
      _iter.Item(&key);
      return FromWord<K>(key);
    }
    iterator& operator++() {
      _iter.Next();
      return *this;
    }
    bool operator!=(RangeEnd) const { return _iter.Item(nullptr); }

  private:
    SetIter _iter;
  };
  iterator begin() const { return iterator(_set); }
  RangeEnd end() const { return {}; }

private:
  const Set* _set;
};

/// The typed face of an Array: same storage, no casts at the call sites.
template <class T> class ArrayOf : public Array {
public:
  explicit ArrayOf(unsigned size = 2) : Array(size) {}
  ArrayOf(unsigned size, T* fill) : Array(size, ToWord(fill)) {}

  void Insert(T* item) { Array::InsertLast(ToWord(item)); }
  void InsertLast(T* item) { Array::InsertLast(ToWord(item)); }
  void Set(unsigned pos, T* item) { Array::Insert(pos, ToWord(item)); }
  T* At(unsigned pos) const { return FromWord<T*>(Array::At(pos)); }
  T* GetFirst() const { return FromWord<T*>(Array::GetFirst()); }
  T* GetLast() const { return FromWord<T*>(Array::GetLast()); }
  T* RemoveLast() { return FromWord<T*>(Array::RemoveLast()); }

  typename ItemsOf<T*>::iterator begin() const { return ItemsOf<T*>(this).begin(); }
  RangeEnd end() const { return {}; }
};

#endif
