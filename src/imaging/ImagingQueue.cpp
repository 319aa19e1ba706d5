#include "imaging/ImagingQueue.h"

dispatch_queue_t imagingQueue()
{
    static const dispatch_queue_t queue = dispatch_queue_create("ZRImaging_q", DISPATCH_QUEUE_CONCURRENT);
    return queue;
}
