#pragma once

#include <stdexcept>
#include <string>

/// A mistake of the user's, or of the machine's, told in one line.
class GalleryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the user wrote, for the message of an error: in quotation marks, and on one line whatever it holds.
///
/// Control characters become escapes: "\n", "\t", "\r", else "\u" and four digits. What is not UTF-8 becomes
/// U+FFFD.
std::string quoted(const std::string& words);
