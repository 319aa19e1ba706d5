#pragma once

#include "Options.h"

#include <filesystem>
#include <vector>

/// Shows the gallery in a window until that is closed; or, when the options want pictures or there is no
/// display, writes pictures and answers their paths. Throws GalleryError when they cannot be written.
std::vector<std::filesystem::path> runGallery(const GalleryOptions& options);
