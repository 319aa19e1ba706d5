#pragma once

// What every header needs, those included that C may include; docs/stability.md lists them.

// The headers use concepts, ask with `dynamic_cast` for conformance to protocols, and throw.
#if defined(__cplusplus) && (__cplusplus < 202002L || !defined(__cpp_exceptions) || !defined(__cpp_rtti))
#error "KorvidAppKit needs C++20 with exceptions and RTTI: -std=c++20, without -fno-exceptions and -fno-rtti"
#include "the error above" // A missing file ends the compilation here, before hundreds of errors that follow.
#endif

/// Marks a class or function that the shared library offers to its users; everything else stays hidden.
#define KORVID_EXPORT __attribute__((visibility("default")))

// How headers that C may include declare things in both languages.
#ifdef __cplusplus
/// Stands before the functions of headers that C may include.
#define KORVID_EXTERN_C_BEGIN extern "C" {
/// Stands behind them.
#define KORVID_EXTERN_C_END }
/// The name of an enumeration and the integer type that represents it, which C's compilers choose: one of 32
/// bits for the values that ours have.
#define KORVID_ENUM(name, type)                                                                              \
    name:                                                                                                    \
    type
/// Declares a constant of a type that follows.
#define KORVID_CONSTANT inline constexpr
/// Declares a function that is defined in a header and computed by C++'s compiler where its arguments are
/// known.
#define KORVID_CONSTEXPR constexpr
/// Declares another function that is defined in a header.
#define KORVID_INLINE inline
/// Stands behind the parameters of a function that throws nothing and is defined in a header.
#define KORVID_NOEXCEPT noexcept
/// Declares a function whose result must be used, for example since the caller owns it.
#define KORVID_NODISCARD [[nodiscard]]
#else
#define KORVID_EXTERN_C_BEGIN
#define KORVID_EXTERN_C_END
#define KORVID_ENUM(name, type) name
#define KORVID_CONSTANT static const
#define KORVID_CONSTEXPR static inline
#define KORVID_INLINE static inline
#define KORVID_NOEXCEPT
#define KORVID_NODISCARD __attribute__((warn_unused_result))
#endif
