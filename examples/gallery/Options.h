#pragma once

#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The name of the picture of all pages, beside the names of the pages.
inline constexpr const char* kWholeGallery = "gallery";

/// What the command line asks for.
struct GalleryOptions {
    /// The text that the QR page shows.
    NSString qrText = "KorvidAppKit: views and controls for dark desktops, drawn with care.";
    /// What badges and capsules show; null for texts of their own.
    NSString text;
    /// The path that the page of paths shows, y down; null for its own.
    RetainPtr<CGPath> path;
    /// The picture that the page of blurs shows; null for its own.
    RetainPtr<CGImage> image;
    /// Whether what moves stands still.
    bool isStill = false;
    /// Which pages to show, in any order: their names, and kWholeGallery for the picture of them all. Empty
    /// for everything.
    std::vector<std::string> pages;
    /// Where to write pictures instead of opening a window.
    std::optional<std::filesystem::path> snapshotFolder;
    /// The appearance to show everything in; the desktop's where there is none.
    std::optional<NSString> appearanceName;
    bool help = false;

    /// Whether `pages` asks for the page of that name, or for everything.
    bool wants(const char* page) const;

    /// Throws GalleryError for words that make no sense, for a page that there is not, for a text that is not
    /// UTF-8 or that no QR code can hold, and for a file that cannot be read.
    static GalleryOptions parse(int argc, char** argv);
    /// The text of `--help`.
    static std::string usage();
};
