#pragma once

#include <Foundation/NSObject.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Property lists: NSBoxedString, NSNumber, NSDate, NSData, and NSArray and NSDictionary of these. User
/// defaults, archives and Info.plist files are kept in them, in Apple's XML form.
///
/// What that form cannot hold is carried in attributes, which other readers pass over: texts that XML does
/// not allow are base64 of their UTF-16 units, dates between two seconds have a second, exact number.

/// Deeper objects are refused, reading and writing: neither must run out of stack.
inline constexpr int kDeepestPropertyList = 512;
/// Objects that hold more, counted once for each place where they stand, are not copied: few arrays that
/// share their members can stand for more objects than any memory holds.
inline constexpr std::size_t kMostPropertyListObjects = 1'000'000;

/// The object in XML, in UTF-8. Nothing when it is, or holds, anything else than the above, or is too deep.
std::optional<std::string> writePropertyList(const NSObject& object);

/// The object that the XML stands for; null when that is damaged.
RetainPtr<NSObject> readPropertyList(std::string_view xml);

/// A copy that cannot change; immutable values, like strings, are not copied. Null when the object is not a
/// property list, holds too many objects, or is too deep to stand `level` levels below the root.
RetainPtr<NSObject> copyPropertyList(const NSObject& object, int level = 0);
