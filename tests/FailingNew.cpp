// In the place of the runtime's own, for the library, too, where the system binds names across libraries. In a source
// of its own, as compilers that see only one of each pair inlined take them for strangers.
#include "tests/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

thread_local long untilFailure = kNever;
thread_local bool failsOnce = false;
thread_local long live = 0;

void* operator new(std::size_t size) {
  if (untilFailure == 0) {
    if (failsOnce) untilFailure = kNever;
    throw std::bad_alloc();
  }
  if (untilFailure > 0) --untilFailure;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  ++live;
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) --live;
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
