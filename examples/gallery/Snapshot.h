#pragma once

#include "PendingFiles.h"
#include "Stage.h"

/// Adds a picture of each page at two scales: `name.png` and `name@2x.png`. Shows its progress on a terminal.
/// Throws GalleryError when a picture cannot be written or memory runs out.
void addSnapshots(PendingFiles& files, const std::vector<StagedPage>& pages);
