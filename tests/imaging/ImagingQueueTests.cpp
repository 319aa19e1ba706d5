#include "AnglePixels.h"
#include "support/Canvas.h"

#include <KorvidAppKit/ZRBoxBlur.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRNoise.h>

#include <chrono>
#include <future>

// Large images are split over threads, which blocks on the application's render queue must not stall: here a
// barrier on that queue waits for the thread that creates the image.

namespace {

/// Calls `work` while a barrier block on the render queue waits for its end. Returns whether the block saw
/// the end.
template <class Work> bool endsDuringABarrierOfTheRenderQueue(const Work& work)
{
    std::promise<void> started, ended;
    bool hasSeenTheEnd = false;
    dispatch_barrier_async(ZRGraphics::sharedRenderQueue(), [&] {
        started.set_value();
        // A time limit for failure, in which the two wait for each other.
        constexpr std::chrono::seconds kGivesUpAfter{20};
        hasSeenTheEnd = ended.get_future().wait_for(kGivesUpAfter) == std::future_status::ready;
    });
    started.get_future().wait();
    work();
    ended.set_value();
    dispatch_sync(ZRGraphics::sharedRenderQueue(), [] {}); // comes after the barrier
    return hasSeenTheEnd;
}

} // namespace

TEST(ImagingQueue, ABarrierOfTheRenderQueueDoesNotStallNoise)
{
    std::vector<float> samples(1024 * 1024);
    EXPECT_TRUE(endsDuringABarrierOfTheRenderQueue(
        [&] { ZRFillPerlinNoise(samples.data(), 1024, 1024, 1024, 0, 0, 0.1F, 1, 4); }));
    EXPECT_EQ(samples.back(), perlin2d(1023 * 0.1F, 1023 * 0.1F, 1, 4));
}

TEST(ImagingQueue, ABarrierOfTheRenderQueueDoesNotStallABlur)
{
    Canvas canvas(600, 600);
    const auto image = adopt(CGBitmapContextCreateImage(canvas.context()));
    EXPECT_TRUE(
        endsDuringABarrierOfTheRenderQueue([&] { EXPECT_TRUE(adopt(ZRCreateBoxBlurredImage(image, 3))); }));
}

TEST(ImagingQueue, ABarrierOfTheRenderQueueDoesNotStallAngles)
{
    AnglePixels actual;
    EXPECT_TRUE(endsDuringABarrierOfTheRenderQueue([&] { actual = angles(true, 1024, 1024); }));
    EXPECT_TRUE(areSame(actual, plain(true, 1024, 1024)));
}
