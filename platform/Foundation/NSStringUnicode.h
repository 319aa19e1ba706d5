#pragma once

#include <Foundation/NSString.h>

// Case conversion by Unicode's tables, for strings that are not all ASCII and not null.

NSString lowercasedByUnicode(const NSString& string);
NSString uppercasedByUnicode(const NSString& string);
