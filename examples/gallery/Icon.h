#pragma once

#include <AppKit/NSImage.h>

/// A new picture for the gallery's pages and its status item: a ball with a highlight and a soft ring around
/// it. Its size is a square of `side` points, with two pixels for each.
RetainPtr<NSImage> makeGalleryIcon(CGFloat side);
