#pragma once

#include "PendingFiles.h"
#include "Stage.h"

/// The name of a page's picture: `name.png` at scale 1, `name@1.5x.png` at scale 1.5.
std::string snapshotName(const std::string& page, CGFloat scale);

/// Adds a picture of each page at each scale, in pixels per point. Shows its progress on a terminal. Throws
/// GalleryError when a picture cannot be written or memory runs out.
void addSnapshots(
    PendingFiles& files, const std::vector<StagedPage>& pages, const std::vector<CGFloat>& scales);
