#pragma once

// What every header needs, those included that C may include: KorvidAppKit/ZRNoise.h and Foundation/CFDate.h.

// The headers use concepts, ask with `dynamic_cast` for conformance to protocols, and throw.
#if defined(__cplusplus) && (__cplusplus < 202002L || !defined(__cpp_exceptions) || !defined(__cpp_rtti))
#error "KorvidAppKit needs C++20 with exceptions and RTTI: -std=c++20, without -fno-exceptions and -fno-rtti"
#include "the error above" // A missing file ends the compilation here, before hundreds of errors that follow.
#endif

/// Marks a class or function that the shared library offers to its users; everything else stays hidden.
#define KORVID_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
/// Stands before the functions of headers that C may include.
#define KORVID_EXTERN_C_BEGIN extern "C" {
/// Stands behind them.
#define KORVID_EXTERN_C_END }
#else
#define KORVID_EXTERN_C_BEGIN
#define KORVID_EXTERN_C_END
#endif
