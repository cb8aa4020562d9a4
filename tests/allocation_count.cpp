// Replaces the global operator new of the test program. In a file of its own, so that the compiler
// never sees new and delete side by side and takes them for a mismatched pair.

#include "allocation_count.h"

#include <cstdlib>
#include <new>

namespace {
thread_local long count = 0;
}

long allocationCount() {
  return count;
}

// The one of std::stable_sort's buffer, which AddressSanitizer would provide with its own.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++count;
  return std::malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
