#pragma once

#include <Foundation/NSString.h>

#include <optional>
#include <stdexcept>
#include <string>

/// A mistake of the user's, told in one line.
class GalleryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the command line asks for.
struct GalleryOptions {
    /// The text that the QR page shows.
    NSString qrText = "KorvidAppKit: views and controls for dark desktops, drawn with care.";
    /// Where to write pictures instead of opening a window.
    std::optional<std::string> snapshotFolder;
    /// The appearance to show everything in; the desktop's where there is none.
    std::optional<NSString> appearanceName;
    bool help = false;

    /// Throws GalleryError for words that make no sense, and for a text that no QR code can hold.
    static GalleryOptions parse(int argc, char** argv);
    /// The text of `--help`.
    static std::string usage();
};
