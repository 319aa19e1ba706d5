#pragma once

#include "Stage.h"

/// Writes each page to `folder` as `name.png` and `name@2x.png`, and prints the files' names.
///
/// The folder is made if it is not there. The files appear when all of them are complete, or none at all:
/// throws GalleryError when one cannot be written. On a terminal a line tells how far it is.
void writeSnapshots(const std::vector<StagedPage>& pages, const std::string& folder);
