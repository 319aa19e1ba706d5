#pragma once

#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>
#include <KorvidAppKit/ZRPDF.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The name of the picture of all pages.
inline constexpr const char* kWholeGallery = "gallery";

/// The options of the command line.
struct GalleryOptions {
    /// The text of the QR code.
    NSString qrText = "KorvidAppKit: views and controls for dark desktops, drawn with care.";
    /// The text of badges and capsules; null for the pages' own texts.
    NSString text;
    /// The path of the page of paths, with y down; null for the page's own.
    RetainPtr<CGPath> path;
    /// The picture of the page of blurs; null for the page's own.
    RetainPtr<CGImage> image;
    /// The documents of the page of PDF icons; empty for the page's own.
    std::vector<RetainPtr<ZRPDF>> pdfs;
    /// Whether animations are stopped.
    bool isStill = false;
    /// The names of the pages to show, in any order, and kWholeGallery for the picture of them all. Empty for
    /// everything.
    std::vector<std::string> pages;
    /// Where to write pictures instead of opening a window.
    std::optional<std::filesystem::path> snapshotFolder;
    /// The scales of the pictures, in pixels per point, without duplicates.
    std::vector<CGFloat> scales{1, 2};
    /// The appearance; nothing for the desktop's in a window, and dark in pictures.
    std::optional<NSString> appearanceName;
    /// Whether to print the names and titles of the pages instead of showing them.
    bool lists = false;
    bool help = false;

    /// Whether `pages` holds the name, or is empty.
    bool wants(const char* page) const;

    /// Throws GalleryError for unknown options and pages, missing values, a scale out of range or without
    /// pictures, a text that is not UTF-8 or too long for a QR code, and a file that cannot be read.
    static GalleryOptions parse(int argc, char** argv);
    /// The text of `--help`.
    static std::string usage();
};
