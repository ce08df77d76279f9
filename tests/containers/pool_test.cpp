#include "containers/pool.h"

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(Pool, BlocksOfAllSizesAreAlignedAndDoNotOverlap) {
  for (std::size_t size : {1U, 15U, 16U, 17U, 40U, 112U, 192U, 193U, 5000U}) {
    SCOPED_TRACE(size);
    std::vector<unsigned char*> blocks;
    for (unsigned i = 0; i < 3000; i++) {
      blocks.push_back(static_cast<unsigned char*>(kestrin_pool_allocate(size)));
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % 16, 0U);
      std::memset(blocks.back(), static_cast<int>(i % 251), size);
    }
    for (unsigned i = 0; i < blocks.size(); i++) {
      EXPECT_EQ(blocks[i][0], i % 251);
      EXPECT_EQ(blocks[i][size - 1], i % 251);
    }
    for (unsigned char* block : blocks) kestrin_pool_free(block, size);
  }
}

TEST(Pool, WhatComesBackIsHandedOutAgain) {
  void* held = kestrin_pool_allocate(48);
  std::set<void*> first;
  for (unsigned i = 0; i < 100; i++) first.insert(kestrin_pool_allocate(48));
  ASSERT_EQ(first.size(), 100U);
  for (void* block : first) kestrin_pool_free(block, 48);
  std::set<void*> second;
  for (unsigned i = 0; i < 100; i++) second.insert(kestrin_pool_allocate(48));
#ifndef __SANITIZE_ADDRESS__
  EXPECT_EQ(second, first);
#endif
  for (void* block : second) kestrin_pool_free(block, 48);
  kestrin_pool_free(held, 48);
  kestrin_pool_free(nullptr, 48);
}

} // namespace
