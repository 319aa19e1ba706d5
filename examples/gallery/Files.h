#pragma once

#include <CoreGraphics/CGImage.h>

#include <string>

/// The bytes of a file. Throws GalleryError, "cannot read a path from …", where `what` is "a path", when they
/// cannot be read; an empty file counts as one.
std::string readFile(const char* name, const std::string& what);

/// The picture in a PNG file, not null. Throws GalleryError for files that cannot be read or have no picture.
RetainPtr<CGImage> readPicture(const char* name);
