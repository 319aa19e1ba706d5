#pragma once

#include <Foundation/NSAttributedString.h>

// The value of a control or cell, read as any type. Null reads as 0 and as the empty string.

/// The text of a number, a string or an attributed string, else the description.
NSString stringOfValue(const NSObject* value);
/// The number itself, truncated toward zero, or the number that the string begins with.
NSInteger integerOfValue(const NSObject* value);
/// The same, clamped to the range.
int intOfValue(const NSObject* value);
double doubleOfValue(const NSObject* value);
/// The value itself if it is an attributed string, else its string with attributes, which may be null.
RetainPtr<NSAttributedString> attributedStringOfValue(NSObject* value, RetainPtr<NSDictionary> attributes);
