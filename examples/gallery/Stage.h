#pragma once

#include "Options.h"

#include <AppKit/NSView.h>

#include <string>
#include <vector>

/// A page's view on the dark ground, ready to be drawn.
struct StagedPage {
    std::string name;
    RetainPtr<NSView> view;
};

/// Each page that the options ask for by itself, on the ground "zel-blue-bg".
std::vector<StagedPage> stagePages(const GalleryOptions& options);

/// What the window shows: all pages on one ground, row by row, or those that the options ask for when the
/// whole gallery is not among them. Its picture is called kWholeGallery.
StagedPage stageGallery(const GalleryOptions& options);
