// The operator new of a test program, which fails when it is told to. What steers it is each thread's own.
#ifndef TARN_TESTS_FAILINGNEW_H_
#define TARN_TESTS_FAILINGNEW_H_

constexpr long kNever = -1;

extern thread_local long untilFailure;  // Allocations that succeed before one fails, or kNever.
extern thread_local bool failsOnce;     // Whether only one fails, or all behind it, too.
extern thread_local long live;          // Allocations that were not freed yet,
extern thread_local long liveBytes;     // and their bytes.

#endif  // TARN_TESTS_FAILINGNEW_H_
