#include "ContextFuzz.h"

#include "RandomScene.h"
#include "Require.h"

#include <utility>
#include <vector>

namespace {

/// The bytes of a bitmap with padded rows, between bytes that nothing may change.
struct Bitmap {
    std::size_t width, height, bytesPerPixel, bytesPerRow;
    CGImageAlphaInfo info;
    CGRect clip; ///< whole pixels, y upward
    std::vector<std::uint8_t> bytes;

    static constexpr std::size_t kMargin = 64;
    static constexpr std::uint8_t kUntouched = 0x5A;

    std::uint8_t* pixels() { return bytes.data() + kMargin; }
    bool mayPaint(std::size_t index) const;
};

/// Up to 32 x 32 pixels of any format, with memory for them.
Bitmap takeBitmap(FuzzInput& input)
{
    constexpr CGImageAlphaInfo kFormats[] = {
        kCGImageAlphaPremultipliedLast, kCGImageAlphaNoneSkipLast, kCGImageAlphaOnly};
    Bitmap bitmap{};
    bitmap.info = kFormats[input.takeIndex(3)];
    bitmap.bytesPerPixel = bitmap.info == kCGImageAlphaOnly ? 1 : 4;
    bitmap.width = 1 + std::size_t(input.takeIndex(32));
    bitmap.height = 1 + std::size_t(input.takeIndex(32));
    bitmap.bytesPerRow = bitmap.width * bitmap.bytesPerPixel + std::size_t(input.takeIndex(8));
    bitmap.clip =
        CGRectMake(input.takeIndex(8), input.takeIndex(8), input.takeIndex(33), input.takeIndex(33));
    bitmap.bytes.assign(bitmap.bytesPerRow * bitmap.height + 2 * Bitmap::kMargin, Bitmap::kUntouched);
    return bitmap;
}

bool Bitmap::mayPaint(std::size_t index) const
{
    if (index < kMargin || index >= bytes.size() - kMargin)
        return false;
    const std::size_t row = (index - kMargin) / bytesPerRow;
    const std::size_t column = (index - kMargin) % bytesPerRow / bytesPerPixel;
    const double x = double(column), y = double(height - 1 - row);
    return column < width && x >= CGRectGetMinX(clip) && x < CGRectGetMaxX(clip) && y >= CGRectGetMinY(clip)
        && y < CGRectGetMaxY(clip);
}

/// Draws the scene into a copy of the bitmap.
Bitmap drawn(Bitmap bitmap, FuzzInput input)
{
    const auto space = bitmap.info == kCGImageAlphaOnly ? nullptr : adopt(CGColorSpaceCreateDeviceRGB());
    const auto context = adopt(CGBitmapContextCreate(
        bitmap.pixels(), bitmap.width, bitmap.height, 8, bitmap.bytesPerRow, space, bitmap.info));
    require(context != nullptr);
    CGContextClipToRect(context, bitmap.clip);
    RandomScene(input, context).draw();
    return bitmap;
}

/// The bytes, with 0 for those of pixels that hold nothing.
std::vector<std::uint8_t> usedBytes(Bitmap bitmap)
{
    if (bitmap.info != kCGImageAlphaNoneSkipLast)
        return std::move(bitmap.bytes);
    for (std::size_t row = 0; row < bitmap.height; ++row) {
        for (std::size_t x = 0; x < bitmap.width; ++x)
            bitmap.pixels()[row * bitmap.bytesPerRow + x * bitmap.bytesPerPixel + 3] = 0;
    }
    return std::move(bitmap.bytes);
}

} // namespace

void fuzzContext(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const Bitmap empty = takeBitmap(input);
    const Bitmap first = drawn(empty, input);
    for (std::size_t i = 0; i < first.bytes.size(); ++i)
        require(first.bytes[i] == Bitmap::kUntouched || first.mayPaint(i));
    require(usedBytes(drawn(empty, input)) == usedBytes(first));
}
