#pragma once

#include "PendingFiles.h"
#include "Stage.h"

/// Adds a picture of each page at two scales: `name.png` and `name@2x.png`. Throws GalleryError when one
/// cannot be written. On a terminal a line tells how far it is.
void addSnapshots(PendingFiles& files, const std::vector<StagedPage>& pages);
