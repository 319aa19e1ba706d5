#include "CoreText/testing/PrivateFonts.h"
#include "platform/CoreText/TestFont.h"
#include "support/TemporaryFolder.h"
#include "support/Threads.h"

#include <KorvidAppKit/KorvidAppKit.h>

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGraphicsContext.h>
#include <Foundation/NSException.h>

#include <condition_variable>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <thread>

TEST(SharedGraphics, IsOneObject)
{
    EXPECT_NE(ZRGraphics::sharedGraphics(), nullptr);
    EXPECT_EQ(ZRGraphics::sharedGraphics(), ZRGraphics::sharedGraphics());
}

TEST(Graphics, HaveFourColourSpaces)
{
    const auto* graphics = ZRGraphics::sharedGraphics();
    EXPECT_EQ(CGColorSpaceGetModel(graphics->csDeviceRGB()), kCGColorSpaceModelRGB);
    EXPECT_TRUE(
        CGColorSpaceEqualToColorSpace(graphics->csDeviceRGB(), adopt(CGColorSpaceCreateDeviceRGB()).get()));
    EXPECT_TRUE(
        CGColorSpaceEqualToColorSpace(graphics->csDeviceGray(), adopt(CGColorSpaceCreateDeviceGray()).get()));
    EXPECT_EQ(CGColorSpaceCopyName(graphics->csSRGB()), kCGColorSpaceSRGB);
    EXPECT_EQ(CGColorSpaceGetModel(graphics->csPattern()), kCGColorSpaceModelPattern);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(graphics->csPattern()), graphics->csSRGB());
}

TEST(Graphics, ReturnTheSameColourSpacesEachTime)
{
    const auto* graphics = ZRGraphics::sharedGraphics();
    EXPECT_EQ(graphics->csDeviceRGB(), graphics->csDeviceRGB());
    EXPECT_EQ(graphics->csDeviceGray(), graphics->csDeviceGray());
    EXPECT_EQ(graphics->csSRGB(), graphics->csSRGB());
    EXPECT_EQ(graphics->csPattern(), graphics->csPattern());
}

TEST(Graphics, CanBeCreatedAndReleasedBesideTheSharedObject)
{
    auto own = make<ZRGraphics>();
    EXPECT_NE(own, ZRGraphics::sharedGraphics());
    EXPECT_NE(own->CGColorFromHex("123456"), ZRGraphics::sharedGraphics()->CGColorFromHex("123456"));
    own->setForceDark(true);
    EXPECT_FALSE(ZRGraphics::sharedGraphics()->forceDark());
    const auto space = RetainPtr<CGColorSpace>(own->csPattern());
    own = nullptr;
    EXPECT_EQ(CGColorSpaceGetModel(space), kCGColorSpaceModelPattern);
}

TEST(SharedContext, IsTheCurrentContextOfTheThread)
{
    EXPECT_EQ(ZRGraphics::sharedContext(), nullptr);
    const auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 4, 4, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(rep);
    NSGraphicsContext::setCurrentContext(context);
    EXPECT_EQ(ZRGraphics::sharedContext(), context->CGContext());
    std::thread([] { EXPECT_EQ(ZRGraphics::sharedContext(), nullptr); }).join();
    NSGraphicsContext::setCurrentContext(nullptr);
    EXPECT_EQ(ZRGraphics::sharedContext(), nullptr);
}

TEST(Smoothstep, EasesInAndOutAndIsNotClamped)
{
    EXPECT_EQ(ZRGraphics::smoothstep(0), 0);
    EXPECT_EQ(ZRGraphics::smoothstep(0.25), 0.15625);
    EXPECT_EQ(ZRGraphics::smoothstep(0.5), 0.5);
    EXPECT_EQ(ZRGraphics::smoothstep(1), 1);
    EXPECT_EQ(ZRGraphics::smoothstep(1.5), 0);
    EXPECT_EQ(ZRGraphics::smoothstep(-1), 5);
    EXPECT_EQ(ZRGraphics::smoothstep(2), -4);
}

TEST(SharedRenderQueue, IsOneQueueWithItsLabel)
{
    const dispatch_queue_t queue = ZRGraphics::sharedRenderQueue();
    ASSERT_NE(queue, nullptr);
    EXPECT_STREQ(dispatch_queue_get_label(queue), "ZRGraphics_q");
    EXPECT_EQ(ZRGraphics::sharedRenderQueue(), queue);
}

// In a process of its own, where the queue does not exist yet.
TEST(SharedRenderQueueDeathTest, IsCreatedOnceBySeveralThreads)
{
    EXPECT_EXIT(std::exit(allThreadsGetTheSame(ZRGraphics::sharedRenderQueue) ? 0 : 1),
        ::testing::ExitedWithCode(0), "");
}

TEST(SharedRenderQueue, RunsBlocksAtTheSameTime)
{
    // Each block waits for the other: run one after the other, they would never end.
    std::mutex mutex;
    std::condition_variable condition;
    int arrived = 0, done = 0;
    const auto meet = [&] {
        std::unique_lock lock(mutex);
        ++arrived;
        condition.notify_all();
        condition.wait(lock, [&] { return arrived == 2; });
        ++done;
        condition.notify_all();
    };
    dispatch_async(ZRGraphics::sharedRenderQueue(), meet);
    dispatch_async(ZRGraphics::sharedRenderQueue(), meet);
    std::unique_lock lock(mutex);
    condition.wait(lock, [&] { return done == 2; });
    EXPECT_EQ(arrived, 2);
}

TEST(ThemeFont, IsHelveticaNeueLight)
{
    const TemporaryFolder folder;
    folder.write("light.ttf", TestFont("HelveticaNeue-Light").bytes());
    const PrivateFonts fonts(NSString(folder.path().string()));
    const auto font = ZRGraphics::sharedGraphics()->themeFontOfSize(13.5);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->fontName(), "HelveticaNeue-Light");
    EXPECT_EQ(font->pointSize(), 13.5);
    for (const double size : {0.0, -1.0, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(ZRGraphics::sharedGraphics()->themeFontOfSize(size)->pointSize(), 12) << size;
}

TEST(ThemeFont, IsNullWhereOnlyOtherFacesAreInstalled)
{
    const TemporaryFolder folder;
    folder.write(
        "sans.ttf", TestFont("Liberation Sans").bytes()); // the fallback for Helvetica in other functions
    folder.write("regular.ttf", TestFont("Helvetica Neue").bytes());
    const PrivateFonts fonts(NSString(folder.path().string()));
    ASSERT_TRUE(NSFont::fontWithName("HelveticaNeue", 13));
    EXPECT_FALSE(ZRGraphics::sharedGraphics()->themeFontOfSize(13));
}

TEST(ForceDark, IsFalseByDefaultAndStored)
{
    const auto own = make<ZRGraphics>();
    EXPECT_FALSE(own->forceDark());
    own->setForceDark(true);
    EXPECT_TRUE(own->forceDark());
    own->setForceDark(false);
    EXPECT_FALSE(own->forceDark());
}

TEST(Graphics, PassOtherKeyPathsToTheBaseClass)
{
    EXPECT_THROW(ZRGraphics::sharedGraphics()->observeValueForKeyPath("title", nullptr, nullptr, nullptr),
        NSException);
}
