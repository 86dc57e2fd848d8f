// The bytes that are asked of operator new, counted in programs that are linked with its source.
#ifndef BENCH_COUNTINGNEW_H_
#define BENCH_COUNTINGNEW_H_

#include <atomic>
#include <cstddef>

namespace bench {

extern std::atomic<std::size_t> allocated;  // Now.
extern std::atomic<std::size_t> peak;       // At most, since it was set.

}  // namespace bench

#endif  // BENCH_COUNTINGNEW_H_
