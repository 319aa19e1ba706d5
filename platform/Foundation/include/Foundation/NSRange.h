#pragma once

#include <Foundation/NSObjCRuntime.h>

/// A part of a sequence: the index of its first member and how many there are.
struct NSRange {
    NSUInteger location; ///< index of the first member
    NSUInteger length;   ///< number of members
};

/// The range of `length` members from `location` on.
constexpr NSRange NSMakeRange(NSUInteger location, NSUInteger length)
{
    return {location, length};
}
/// The index behind the last member.
constexpr NSUInteger NSMaxRange(NSRange range)
{
    return range.location + range.length;
}
