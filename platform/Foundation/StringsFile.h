#pragma once

#include <Foundation/NSString.h>

#include <optional>
#include <string_view>
#include <unordered_map>

/// Strings by their keys.
using StringsTable = std::unordered_map<NSString, NSString>;

/// What a `.strings` file says: `"key" = "text";` over and over, with comments as in C. Nothing when it is
/// damaged; `line`, if given, is then the number of the line.
///
/// The bytes are UTF-8, or UTF-16 with a byte order mark or recognised by its zero bytes. Keys and strings
/// stand in double or single quotes; words of letters, digits and "_$./:-" may do without. A key on its own
/// stands for itself. A backslash makes the controls \a \b \f \n \r \t \v, a UTF-16 unit from up to four
/// hexadecimal digits after \U or \u, or from up to three octal ones, and any other character itself. The
/// last of equal keys counts.
std::optional<StringsTable> parseStringsFile(std::string_view bytes, int* line = nullptr);
