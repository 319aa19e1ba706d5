#pragma once

#include "Options.h"

#include <AppKit/NSView.h>

#include <string>
#include <vector>

/// A page's view on its background, ready to be drawn.
struct StagedPage {
    std::string name;
    RetainPtr<NSView> view;
};

/// The pages that the options ask for, each on the background "zel-blue-bg".
std::vector<StagedPage> stagePages(const GalleryOptions& options);

/// All pages with their titles, in rows of equal width on one background; its name is kWholeGallery.
StagedPage stageGallery(const GalleryOptions& options);
