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

/// All pages in rows on one background, or only those that the options ask for when kWholeGallery is not
/// among them; its name is kWholeGallery.
StagedPage stageGallery(const GalleryOptions& options);
