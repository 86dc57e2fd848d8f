// In the place of the runtime's own, for the library, too, where the system binds names across libraries. In a source
// of its own, as compilers that see only one of each pair inlined take them for strangers.
#include "tests/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

thread_local long untilFailure = kNever;
thread_local bool failsOnce = false;
thread_local long live = 0;
thread_local long liveBytes = 0;

namespace {

constexpr std::size_t kHeader = 16;  // Where each allocation keeps its size. Keeps the alignment.

}  // namespace

void* operator new(std::size_t size) {
  if (untilFailure == 0) {
    if (failsOnce) untilFailure = kNever;
    throw std::bad_alloc();
  }
  if (untilFailure > 0) --untilFailure;
  void* const memory = std::malloc(kHeader + size);
  if (memory == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(memory) = size;
  ++live;
  liveBytes += static_cast<long>(size);
  return static_cast<char*>(memory) + kHeader;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  void* const start = static_cast<char*>(memory) - kHeader;
  --live;
  liveBytes -= static_cast<long>(*static_cast<std::size_t*>(start));
  std::free(start);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
