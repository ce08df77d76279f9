// Pool: memory for the small objects of which a netlist has millions (connections, nets, instances, their arrays).
// Blocks of one size come from slabs, so that neighbours in time are neighbours in memory, nothing is spent on a header
// for each block, and giving back is a push. A size's slabs are released when its last block comes back.
#ifndef KESTRIN_CONTAINERS_POOL_H
#define KESTRIN_CONTAINERS_POOL_H

#include <cstddef>

/// A block of at least `size` bytes, aligned for any object. Sizes that no pool serves come from operator new.
void* kestrin_pool_allocate(std::size_t size);
/// The size is that of the allocation. Null is allowed.
void kestrin_pool_free(void* block, std::size_t size);

/// Base of classes whose objects live in the pools. A class with derived ones needs a virtual destructor, so that the
/// size of the object deleted is known.
class Pooled {
public:
  static void* operator new(std::size_t size) { return kestrin_pool_allocate(size); }
  static void* operator new(std::size_t, void* place) { return place; }
  static void operator delete(void* object, std::size_t size) { kestrin_pool_free(object, size); }

protected:
  Pooled() = default;
  ~Pooled() = default;
};

#endif
