#pragma once

#include <Foundation/NSObject.h>

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

/// The object in XML, in UTF-8. Nothing when it is, or holds, anything else than the above, or is too deep.
std::optional<std::string> writePropertyList(const NSObject& object);

/// The object that the XML stands for; null when that is damaged.
RetainPtr<NSObject> readPropertyList(std::string_view xml);

/// The same object, or, where it can be changed, a copy that cannot. Null when it is not a property list,
/// or too deep to stand `level` levels below the root.
RetainPtr<NSObject> copyPropertyList(const NSObject& object, int level = 0);
