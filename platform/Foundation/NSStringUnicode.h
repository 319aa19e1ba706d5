#pragma once

#include <Foundation/NSString.h>

// Case by Unicode's tables, for texts that have more than ASCII; never null.

NSString lowercasedByUnicode(const NSString& string);
NSString uppercasedByUnicode(const NSString& string);
