#pragma once

#include <stdexcept>
#include <string>

/// An error for the user: its text is one line.
class GalleryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The user's words in quotation marks, on one line, for an error message. Control characters become escapes
/// ("\n", "\t", "\r", else "\u" and four digits), malformed UTF-8 becomes U+FFFD.
std::string quoted(const std::string& words);
