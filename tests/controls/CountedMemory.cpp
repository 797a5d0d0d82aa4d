#include "CountedMemory.h"

#include <cstdlib>
#include <new>

std::int64_t qm::test::allocations = 0;

void* operator new(std::size_t size) {
  ++qm::test::allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
