#include "containers/pool.h"

#include <algorithm>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define KESTRIN_NO_POOLS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KESTRIN_NO_POOLS
#endif
#endif

#ifdef KESTRIN_NO_POOLS
// The sanitizer sees the use of what was freed only where each block is one of its own.
void* kestrin_pool_allocate(std::size_t size) { return ::operator new(size); }
void kestrin_pool_free(void* block, std::size_t) { ::operator delete(block); }

#else
namespace {

constexpr std::size_t granule = 16;
constexpr std::size_t largest_block = 192;
/// The first slab is small for the many runs that need little; each further one is twice as large up to the limit.
constexpr std::size_t first_slab = 4096;
constexpr std::size_t largest_slab = 1048576;

/// The blocks of one size.
class BlockPool {
public:
  void* Allocate(std::size_t size) {
    _live++;
    if (Block* block = _free) {
      _free = block->next;
      return block;
    }
    if (static_cast<std::size_t>(_end - _fresh) < size) AddSlab();
    void* block = _fresh;
    _fresh += size;
    return block;
  }

  void Free(void* memory) {
    auto* block = static_cast<Block*>(memory);
    block->next = _free;
    _free = block;
    if (--_live == 0) Release();
  }

private:
  struct Block {
    Block* next;
  };
  /// Stands at the start of a slab.
  struct alignas(granule) Slab {
    Slab* previous;
  };

  void AddSlab() {
    auto* slab = static_cast<Slab*>(::operator new(_slab_size));
    slab->previous = _slabs;
    _slabs = slab;
    _fresh = reinterpret_cast<char*>(slab + 1);
    _end = reinterpret_cast<char*>(slab) + _slab_size;
    _slab_size = std::min(2 * _slab_size, largest_slab);
  }

  void Release() {
    while (Slab* slab = _slabs) {
      _slabs = slab->previous;
      ::operator delete(slab);
    }
    *this = BlockPool();
  }

  Block* _free = nullptr;
  char* _fresh = nullptr;
  char* _end = nullptr;
  Slab* _slabs = nullptr;
  std::size_t _live = 0;
  std::size_t _slab_size = first_slab;
};

BlockPool pools[largest_block / granule];

constexpr std::size_t PoolIndex(std::size_t size) { return (size + granule - 1) / granule - 1; }

} // namespace

void* kestrin_pool_allocate(std::size_t size) {
  if (size - 1 >= largest_block) return ::operator new(size);
  const std::size_t index = PoolIndex(size);
  return pools[index].Allocate((index + 1) * granule);
}

void kestrin_pool_free(void* block, std::size_t size) {
  if (!block) return;
  if (size - 1 >= largest_block)
    ::operator delete(block);
  else
    pools[PoolIndex(size)].Free(block);
}
#endif
