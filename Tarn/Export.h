/// @file
/// What marks a name as part of the shared library's interface, and the library's version.
#ifndef TARN_EXPORT_H_
#define TARN_EXPORT_H_

#if __cplusplus < 202002L && !(defined(_MSVC_LANG) && _MSVC_LANG >= 202002L)
#error "Tarn.DataStructures needs C++20: compile with -std=c++20 or later (/std:c++20)."
#elif !defined(__cpp_exceptions)
#error "Tarn.DataStructures needs exceptions: compile without -fno-exceptions (with /EHsc)."
#endif

/// The version that a program is compiled with, in three numbers.
/// @{
#define TARN_VERSION_MAJOR 2
#define TARN_VERSION_MINOR 0
#define TARN_VERSION_PATCH 0
/// @}

/// @def TARN_API
/// Marks a name as exported from the shared library, or imported from it.
// The build of the library defines TARN_BUILDING; whoever uses a static build is given TARN_STATIC by the target.
#if defined(TARN_STATIC)
#define TARN_API
#elif defined(_WIN32)
#if defined(TARN_BUILDING)
#define TARN_API __declspec(dllexport)
#else
#define TARN_API __declspec(dllimport)
#endif
#else
#define TARN_API __attribute__((visibility("default")))
#endif

#endif  // TARN_EXPORT_H_
