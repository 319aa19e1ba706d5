#include "../BitmapPixels.h"

#include <QImageReader>
#include <gtest/gtest.h>

namespace {

/// Sets Qt's limit on the memory of a picture that it reads, in megabytes, as long as it lives.
class AllocationLimit {
public:
    explicit AllocationLimit(int megabytes) { QImageReader::setAllocationLimit(megabytes); }
    AllocationLimit(const AllocationLimit&) = delete;
    ~AllocationLimit() { QImageReader::setAllocationLimit(_before); }

private:
    const int _before = QImageReader::allocationLimit();
};

// Qt refuses pictures of more than 128 MB at first, which 2^26 pixels need four times; a lower limit shows
// the same with less memory.
TEST(NSBitmapImageRepPNG, ReadsPicturesAboveQtsLimitWithoutChangingIt)
{
    const AllocationLimit limit(1);
    struct Layout {
        const char* name;
        std::size_t bytesPerPixel;
        CGImageAlphaInfo info;
        const NSColorSpace* space;
    };
    const Layout layouts[] = {{"RGBA", 4, kCGImageAlphaPremultipliedLast, NSColorSpace::sRGBColorSpace()},
        {"RGB", 3, kCGImageAlphaNone, NSColorSpace::sRGBColorSpace()},
        {"gray", 1, kCGImageAlphaNone, NSColorSpace::deviceGrayColorSpace()}};
    for (const Layout& layout : layouts) {
        SCOPED_TRACE(layout.name);
        constexpr int kWidth = 1030, kHeight = 1025; // above 1 MB in each layout
        Bytes bytes(kWidth * kHeight * layout.bytesPerPixel, 255);
        bytes.front() = 100;
        const auto picture = rep(kWidth, kHeight, layout.bytesPerPixel, layout.info, bytes, layout.space);
        const auto read = thereAndBack(*picture);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(pixels(read).front(), 100);
        EXPECT_EQ(pixels(read).back(), 255);
        EXPECT_EQ(read->pixelsHigh(), kHeight);
    }
    EXPECT_EQ(QImageReader::allocationLimit(), 1);
}

} // namespace
