#pragma once

#include "Options.h"

#include <filesystem>
#include <vector>

/// Shows the gallery in a window until that is closed. When the options ask for pictures, or after a message
/// when there is no display, writes pictures instead and returns their paths.
///
/// Throws GalleryError when the pictures cannot be written, and NSException as
/// `NSApplication::sharedApplication()` does.
std::vector<std::filesystem::path> runGallery(const GalleryOptions& options);
