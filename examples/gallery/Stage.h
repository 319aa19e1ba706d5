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

/// Each page by itself, on the ground "zel-blue-bg".
std::vector<StagedPage> stagePages(const GalleryOptions& options);

/// All pages on one ground, row by row: what the window shows. Its picture is called "gallery".
StagedPage stageGallery(const GalleryOptions& options);
