#pragma once

/// The format of archives: a property list whose root is a dictionary of
///
/// - `$version`: the integer 1;
/// - `$root`: the index of the object that was archived;
/// - `$objects`: an array with each object once. Strings, numbers, dates and data are written as such. An
///   array is an array of references. Any other object is a dictionary: `$class` is the class's name,
///   `$values` a dictionary of what it encoded: numbers themselves, objects as references. NSDictionary and
///   NSNull are written in this way too.
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

/// The deepest nesting of objects, so that none exhausts the stack.
inline constexpr int kDeepestArchive = 512;
/// In bytes. Larger archives are refused.
inline constexpr std::size_t kLargestArchive = 64U << 20;
