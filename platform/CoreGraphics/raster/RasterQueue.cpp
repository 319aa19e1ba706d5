#include "CoreGraphics/raster/RasterQueue.h"

#include <Foundation/dispatch.h>

#include <new>

void applyOnRasterQueue(std::size_t count, const std::function<void(std::size_t)>& work)
{
    try {
        static const dispatch_queue_t queue = dispatch_queue_create("CGRaster", DISPATCH_QUEUE_CONCURRENT);
        dispatch_apply(count, queue, work);
    } catch (const std::bad_alloc&) { // before the first call
        for (std::size_t i = 0; i < count; ++i)
            work(i);
    }
}
