#pragma once

/// How an archive is laid out: a property list, a dictionary of
///
/// - `$version`: the integer 1;
/// - `$root`: the index of the object that was archived;
/// - `$objects`: an array with each object once. Texts, numbers, dates and data are themselves. An array is
/// an
///   array of references. All else is a dictionary: `$class` is the class's name, `$values` a dictionary of
///   what it encoded: numbers themselves, objects as references. NSDictionary and NSNull are written in this
///   way too.
///
/// A reference is a dictionary: `$ref` is the object's index; without it, null.

#include <Foundation/NSObjCRuntime.h>

#include <cstddef>

inline constexpr NSInteger kArchiveVersion = 1;
inline constexpr const char* kArchiveVersionKey = "$version";
inline constexpr const char* kArchiveRootKey = "$root";
inline constexpr const char* kArchiveObjectsKey = "$objects";
inline constexpr const char* kArchiveClassKey = "$class";
inline constexpr const char* kArchiveValuesKey = "$values";
inline constexpr const char* kArchiveReferenceKey = "$ref";
inline constexpr const char* kArchiveDictionaryName = "NSDictionary";
inline constexpr const char* kArchiveNullName = "NSNull";

/// Objects may hold objects that hold objects … this deep: none must exhaust the stack.
inline constexpr int kDeepestArchive = 512;
/// More bytes than this are no archive.
inline constexpr std::size_t kLargestArchive = 64U << 20;
