#pragma once

#include <Foundation/dispatch.h>

/// The concurrent queue over which the library shares out large images. Borrowed; never destroyed. Any
/// thread.
///
/// Applications cannot reach it, so no block of theirs can hold up the library's work: a barrier on
/// `ZRGraphics::sharedRenderQueue()` may wait for the thread that is filling an image.
dispatch_queue_t imagingQueue();
