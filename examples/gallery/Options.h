#pragma once

#include <Foundation/NSString.h>

#include <filesystem>
#include <optional>
#include <string>

/// What the command line asks for.
struct GalleryOptions {
    /// The text that the QR page shows.
    NSString qrText = "KorvidAppKit: views and controls for dark desktops, drawn with care.";
    /// Where to write pictures instead of opening a window.
    std::optional<std::filesystem::path> snapshotFolder;
    /// The appearance to show everything in; the desktop's where there is none.
    std::optional<NSString> appearanceName;
    bool help = false;

    /// Throws GalleryError for words that make no sense, and for a text that is not UTF-8 or that no QR code
    /// can hold.
    static GalleryOptions parse(int argc, char** argv);
    /// The text of `--help`.
    static std::string usage();
};
