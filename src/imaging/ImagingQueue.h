#pragma once

#include <Foundation/dispatch.h>

#include <functional>
#include <new>

/// The concurrent queue over which the library shares out large images. Borrowed; never destroyed. Any
/// thread.
///
/// Applications cannot reach it, so no block of theirs can hold up the library's work: a barrier on
/// `ZRGraphics::sharedRenderQueue()` may wait for the thread that is filling an image.
dispatch_queue_t imagingQueue();

/// Calls `block` with 0 to `count` - 1 on several threads, and returns when all calls have ended. Where there
/// is no memory for that, makes all calls itself. `block` must not throw.
template <class Block> void applyOnImagingQueue(std::size_t count, const Block& block)
{
    try {
        dispatch_apply(count, imagingQueue(), std::cref(block));
    } catch (const std::bad_alloc&) { // before the first call
        for (std::size_t i = 0; i < count; ++i)
            block(i);
    }
}
