#include "bench/CountingNew.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace bench {

std::atomic<std::size_t> allocated = 0;
std::atomic<std::size_t> peak = 0;

}  // namespace bench

// In front of each block stands its size.
static constexpr std::size_t kHeader = alignof(std::max_align_t);

void* operator new(std::size_t size) {
  void* const block = std::malloc(size + kHeader);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  bench::peak = std::max<std::size_t>(bench::peak, bench::allocated += size);
  return static_cast<std::byte*>(block) + kHeader;
}

void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* const block = static_cast<std::byte*>(pointer) - kHeader;
  bench::allocated -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t /*size*/) noexcept { operator delete(pointer); }
