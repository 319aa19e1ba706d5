#include <CoreGraphics/CGDataProvider.h>

#include <Foundation/NSData.h>

#include "support/Threads.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

/// What a release callback was called with.
struct Released {
    int count = 0;
    const void* data = nullptr;
    std::size_t size = 0;

    static void callback(void* info, const void* data, std::size_t size)
    {
        auto& released = *static_cast<Released*>(info);
        ++released.count;
        released.data = data;
        released.size = size;
    }
};

constexpr std::uint8_t kBytes[] = {1, 2, 3, 4};

TEST(CGDataProviderCreateWithData, CallsTheReleaseCallbackOnceWithTheLastReference)
{
    Released released;
    {
        const auto provider = adopt(CGDataProviderCreateWithData(&released, kBytes, 4, Released::callback));
        CGDataProviderRelease(CGDataProviderRetain(provider));
        EXPECT_EQ(released.count, 0);
    }
    EXPECT_EQ(released.count, 1);
    EXPECT_EQ(released.data, kBytes);
    EXPECT_EQ(released.size, 4U);
}

TEST(CGDataProviderCreateWithData, AcceptsANullCallback)
{
    const auto provider = adopt(CGDataProviderCreateWithData(nullptr, kBytes, 4, nullptr));
    EXPECT_TRUE(provider);
}

TEST(CGDataProviderCreateWithData, RejectsNullBytesButAcceptsZeroLength)
{
    Released released;
    EXPECT_EQ(CGDataProviderCreateWithData(&released, nullptr, 4, Released::callback), nullptr);
    EXPECT_EQ(released.count, 0);
    const auto empty = adopt(CGDataProviderCreateWithData(nullptr, nullptr, 0, nullptr));
    ASSERT_TRUE(empty);
    EXPECT_EQ(CGDataProviderCopyData(empty)->length(), 0U);
}

TEST(CGDataProviderCreateWithCFData, SharesTheBytes)
{
    RetainPtr<CGDataProvider> provider;
    {
        const auto data = NSData::dataWithBytes(kBytes, 4);
        provider = adopt(CGDataProviderCreateWithCFData(data));
        EXPECT_EQ(CGDataProviderCopyData(provider).get(), data);
    }
    EXPECT_TRUE(CGDataProviderCopyData(provider)->isEqual(NSData::dataWithBytes(kBytes, 4).get()));
}

TEST(CGDataProviderCopyData, CopiesBorrowedBytes)
{
    std::vector<std::uint8_t> bytes = {1, 2, 3, 4};
    RetainPtr<NSData> data;
    {
        const auto provider =
            adopt(CGDataProviderCreateWithData(nullptr, bytes.data(), bytes.size(), nullptr));
        data = CGDataProviderCopyData(provider);
    }
    bytes.assign(4, 0);
    EXPECT_TRUE(data->isEqual(NSData::dataWithBytes(kBytes, 4).get()));
}

TEST(CGDataProvider, AcceptsNullEverywhere)
{
    EXPECT_EQ(CGDataProviderCreateWithCFData(nullptr), nullptr);
    EXPECT_EQ(CGDataProviderCopyData(nullptr).get(), nullptr);
    EXPECT_EQ(CGDataProviderRetain(nullptr), nullptr);
    CGDataProviderRelease(nullptr);
}

TEST(CGDataProvider, IsReferenceCountedAcrossThreads)
{
    Released released;
    {
        const auto provider = adopt(CGDataProviderCreateWithData(&released, kBytes, 4, Released::callback));
        onThreads(4, [&provider](int) {
            for (int turn = 0; turn < 5000; ++turn)
                CGDataProviderRelease(CGDataProviderRetain(provider));
        });
        EXPECT_EQ(released.count, 0);
    }
    EXPECT_EQ(released.count, 1);
}

} // namespace
