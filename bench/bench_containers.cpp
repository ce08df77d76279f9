// The containers at three sizes, each ten times the one before. Time per item must stay level from size to size; the
// fitted complexity is printed behind each family. Names are kept so that figures can be followed through time.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "containers/heap.h"
#include "containers/views.h"

namespace {

constexpr int64_t smallest = 10'000;

void AtThreeSizes(benchmark::internal::Benchmark* family) {
  family->Arg(smallest)->Arg(10 * smallest)->Arg(100 * smallest)->Unit(benchmark::kMillisecond);
}

void Linear(benchmark::internal::Benchmark* family) {
  AtThreeSizes(family);
  family->Complexity(benchmark::oN);
}

// Items per second, and the size for the complexity.
void Count(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

// Addresses as an allocator gives them: multiples of 16 in no order.
std::vector<void*> Addresses(int64_t count) {
  std::vector<void*> addresses;
  uint64_t word = 1;
  for (int64_t i = 0; i < count; i++) {
    word = word * 6364136223846793005U + 1442695040888963407U;
    addresses.push_back(ToWord(static_cast<int64_t>((word >> 24) << 4 | 0x10)));
  }
  return addresses;
}

std::vector<std::string> Names(int64_t count) {
  std::vector<std::string> names;
  for (int64_t i = 0; i < count; i++) names.push_back("u_core|alu|result[" + std::to_string(i) + "]");
  return names;
}

void ArrayAppendAndWalk(benchmark::State& state) {
  for (auto _ : state) {
    Array array(2);
    for (int64_t i = 0; i < state.range(0); i++) array.Insert(ToWord(i));
    int64_t sum = 0;
    for (int64_t item : ItemsOf<int64_t>(&array)) sum += item;
    benchmark::DoNotOptimize(sum);
  }
  Count(state);
}
BENCHMARK(ArrayAppendAndWalk)->Apply(Linear);

template <class MAP> void MapOfPointers(benchmark::State& state) {
  std::vector<void*> addresses = Addresses(state.range(0));
  for (auto _ : state) {
    MAP map(HASH_POINTER, 2);
    for (void* address : addresses) map.Insert(address, address);
    for (void* address : addresses) benchmark::DoNotOptimize(map.GetItem(address));
  }
  Count(state);
}
BENCHMARK(MapOfPointers<Map>)->Name("MapOfPointers")->Apply(Linear);
BENCHMARK(MapOfPointers<GigaMap>)->Name("GigaMapOfPointers")->Apply(Linear);

void MapOfNames(benchmark::State& state) {
  std::vector<std::string> names = Names(state.range(0));
  for (auto _ : state) {
    Map map(HASH_STRING, 2);
    for (const std::string& name : names) map.Insert(name.c_str(), &name);
    for (const std::string& name : names) benchmark::DoNotOptimize(map.GetValue(name.c_str()));
  }
  Count(state);
}
BENCHMARK(MapOfNames)->Apply(Linear);

void MapWalkWithRemoval(benchmark::State& state) {
  std::vector<void*> addresses = Addresses(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    Map map(HASH_POINTER, 2);
    for (void* address : addresses) map.Insert(address, address);
    state.ResumeTiming();
    for (auto [key, value] : Entries<void*, void*>(map)) map.Remove(key);
    benchmark::DoNotOptimize(map.Size());
  }
  Count(state);
}
BENCHMARK(MapWalkWithRemoval)->Apply(Linear);

// Most tables of a netlist are tiny and live for a moment.
void TinyMaps(benchmark::State& state) {
  for (auto _ : state)
    for (int64_t i = 1; i <= state.range(0); i++) {
      Map map(HASH_POINTER, 2);
      map.Insert(ToWord(i), nullptr);
      map.Insert(ToWord(i + 1), nullptr);
      benchmark::DoNotOptimize(map.GetItem(ToWord(i)));
    }
  Count(state);
}
BENCHMARK(TinyMaps)->Apply(Linear);

void SetOfPointers(benchmark::State& state) {
  std::vector<void*> addresses = Addresses(state.range(0));
  for (auto _ : state) {
    Set set(HASH_POINTER, 2);
    for (void* address : addresses) set.Insert(address);
    for (void* address : addresses) benchmark::DoNotOptimize(set.Contains(address));
    for (void* address : addresses) set.Remove(address);
  }
  Count(state);
}
BENCHMARK(SetOfPointers)->Apply(Linear);

void HeapInsertAndExtract(benchmark::State& state) {
  std::deque<UnsignedHeapNode> nodes;
  uint32_t key = 1;
  for (int64_t i = 0; i < state.range(0); i++) nodes.emplace_back(key = key * 1664525U + 1013904223U, nullptr);
  for (auto _ : state) {
    Heap heap;
    for (UnsignedHeapNode& node : nodes) heap.Insert(&node);
    while (HeapNode* node = heap.ExtractRoot()) benchmark::DoNotOptimize(node);
  }
  Count(state);
}
BENCHMARK(HeapInsertAndExtract)->Apply(AtThreeSizes)->Complexity(benchmark::oNLogN);

} // namespace
