// TARN_INITIALISED_FIRST, in front of a variable that is defined in a source which includes this: it is ready
// before any static initialiser that asks for no place in the order, also in a static build.
#ifndef TARN_PLATFORM_INITIALISEDFIRST_H_
#define TARN_PLATFORM_INITIALISEDFIRST_H_

#if defined(_MSC_VER)
#pragma warning(disable : 4073)  // Tells that the next line does what it is to do.
#pragma init_seg(lib)            // For all of the source.
#define TARN_INITIALISED_FIRST
#else
#define TARN_INITIALISED_FIRST __attribute__((init_priority(101)))  // The first that is not the compiler's own.
#endif

#endif  // TARN_PLATFORM_INITIALISEDFIRST_H_
