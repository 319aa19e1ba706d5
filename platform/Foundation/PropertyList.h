#pragma once

#include <Foundation/NSObject.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Property lists: NSBoxedString, NSNumber, NSDate, NSData, and NSArray and NSDictionary of these. User
/// defaults, archives and Info.plist files are stored as property lists, in Apple's XML format.
///
/// What that format cannot express is written as attributes, which other readers ignore: strings with
/// characters that XML does not allow are base64 of their UTF-16 units, dates with fractions of seconds have
/// an attribute with the exact number.

/// More deeply nested objects are neither read nor written, so that neither exhausts the stack.
inline constexpr int kDeepestPropertyList = 512;
/// Objects that hold more, counted once for each place where they stand, are not copied: few arrays that
/// share their members can stand for more objects than any memory holds.
inline constexpr std::size_t kMostPropertyListObjects = 1'000'000;

/// The object as XML in UTF-8. Nothing when it is, or holds, an object of another class, or is nested too
/// deeply.
std::optional<std::string> writePropertyList(const NSObject& object);

/// The object that the XML describes; null when that is damaged.
RetainPtr<NSObject> readPropertyList(std::string_view xml);

/// A copy that cannot change; immutable values, like strings, are not copied. Null when the object is not a
/// property list, holds too many objects, or is too deep to stand `level` levels below the root.
RetainPtr<NSObject> copyPropertyList(const NSObject& object, int level = 0);
