#include <KorvidAppKit/ZRBoxBlur.h>

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "imaging/BoxBlurRule.h"
#include "imaging/BoxBlurTiles.h"
#include "imaging/ImagingQueue.h"
#include "imaging/ResultMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

/// The longest side of an image that a context can draw.
constexpr std::size_t kMaximumImageSide = 32766;

bool canBlur(std::size_t width, std::size_t height)
{
    return width > 0 && height > 0 && width <= kMaximumImageSide && height <= kMaximumImageSide;
}

/// `count` transparent pixels; null if there is no memory.
MallocMemory<std::uint32_t> makePixels(std::int64_t count)
{
    return MallocMemory<std::uint32_t>(
        static_cast<std::uint32_t*>(std::calloc(static_cast<std::size_t>(count), sizeof(std::uint32_t))));
}

/// A context that takes ownership of `pixels`, in rows of `rowPixels`. Null if `pixels` is.
RetainPtr<CGContext> makeContext(
    MallocMemory<std::uint32_t> pixels, CGSize size, std::int64_t rowPixels, CGColorSpaceRef space)
{
    if (!pixels)
        return nullptr;
    auto context = adopt(CGBitmapContextCreateWithData(pixels.get(), static_cast<std::size_t>(size.width),
        static_cast<std::size_t>(size.height), 8, 4 * static_cast<std::size_t>(rowPixels), space,
        kCGImageAlphaPremultipliedLast, _ZRReleaseBMData, nullptr));
    if (context)
        static_cast<void>(pixels.release());
    return context;
}

/// A new context, in rows of `rowPixels`, with a part of the image drawn into it. Null if there is no memory.
RetainPtr<CGContext> drawPart(
    CGImageRef image, BoxBlurSpan rows, BoxBlurSpan columns, std::int64_t rowPixels, CGColorSpaceRef space)
{
    const auto size = CGSizeMake(
        static_cast<CGFloat>(columns.end - columns.first), static_cast<CGFloat>(rows.end - rows.first));
    auto context = makeContext(makePixels(rowPixels * (rows.end - rows.first)), size, rowPixels, space);
    const auto width = static_cast<CGFloat>(CGImageGetWidth(image));
    const auto height = static_cast<CGFloat>(CGImageGetHeight(image));
    // On a transparent background copying equals drawing, and is faster. Rows count from the top, y from the
    // bottom.
    CGContextSetBlendMode(context, kCGBlendModeCopy);
    CGContextDrawImage(context,
        CGRectMake(
            -static_cast<CGFloat>(columns.first), static_cast<CGFloat>(rows.end) - height, width, height),
        image);
    return context;
}

/// An image that takes ownership of `pixels`, in rows without padding.
CGImageRef createImage(
    MallocMemory<std::uint8_t> pixels, std::size_t width, std::size_t height, CGColorSpaceRef space)
{
    const auto release = [](void*, const void* data, std::size_t size) {
        returnResultMemory(const_cast<void*>(data), size);
    };
    const auto provider =
        adopt(CGDataProviderCreateWithData(nullptr, pixels.get(), 4 * width * height, release));
    static_cast<void>(pixels.release());
    return CGImageCreate(width, height, 8, 32, 4 * width, space, kCGImageAlphaPremultipliedLast,
        provider.get(), nullptr, true, kCGRenderingIntentDefault);
}

/// Writes the blurred image to `destination`; false if memory runs out.
bool blurImage(CGImageRef image, const RunningBoxBlur& blur, std::uint8_t* destination, CGColorSpaceRef space)
{
    const BoxBlurTiles tiles(blur);
    const std::int64_t perRow = tiles.columns.count();
    const auto count = static_cast<std::size_t>(perRow * tiles.rows.count());
    const auto blurTile = [&](std::int64_t i) { // returns false or throws if memory runs out
        const BoxBlurSpan rows = tiles.rows.part(i / perRow), columns = tiles.columns.part(i % perRow);
        const BoxBlurSpan reached = blur.reach(columns, blur.width);
        const auto source = drawPart(
            image, blur.reach(rows, blur.height), reached, RunningBoxBlur::paddedLength(reached), space);
        const auto scratch = makeBytes(blur.scratchSize(columns));
        if (!source || !scratch)
            return false;
        blur.blurTile(rows, columns, static_cast<const std::uint8_t*>(CGBitmapContextGetData(source)),
            destination, scratch.get());
        return true;
    };
    std::atomic<bool> allDone = true;
    const auto blurNumber = [&](std::size_t i) {
        try {
            if (allDone && !blurTile(static_cast<std::int64_t>(i)))
                allDone = false;
        } catch (const std::bad_alloc&) { // exceptions must not leave a dispatched block
            allDone = false;
        }
    };
    if (BoxBlurTiles::areShared(blur)) {
        applyOnImagingQueue(count, blurNumber);
    } else {
        for (std::size_t i = 0; i < count; ++i)
            blurNumber(i);
    }
    return allDone;
}

/// Null if the image cannot be blurred, or there is no memory for pixels. Throws std::bad_alloc if there is
/// none for other objects.
CGImageRef createBlurredImage(CGImageRef image, int boxDim)
{
    const std::size_t width = CGImageGetWidth(image), height = CGImageGetHeight(image);
    if (!canBlur(width, height))
        return nullptr;
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    auto pixels = takeResultMemory(4 * width * height);
    if (!pixels)
        return nullptr;
    if (blursIntoNothing(boxDim))
        std::fill_n(pixels.get(), 4 * width * height, std::uint8_t{0});
    else if (!blurImage(image, {static_cast<std::int64_t>(width), static_cast<std::int64_t>(height), boxDim},
                 pixels.get(), space))
        return nullptr;
    return createImage(std::move(pixels), width, height, space);
}

} // namespace

void _ZRReleaseBMData(void*, void* data)
{
    std::free(data);
}

CGImageRef ZRGraphics::copyBoxBlurredImageFromImage(CGImageRef image, int boxDim) const
{
    const std::size_t width = CGImageGetWidth(image), height = CGImageGetHeight(image);
    if (!canBlur(width, height))
        return nullptr;
    const auto w = static_cast<std::int64_t>(width), h = static_cast<std::int64_t>(height);
    const auto source = drawPart(image, {0, h}, {0, w}, w, csSRGB());
    const auto destination = makeContext(
        makePixels(w * h), CGSizeMake(static_cast<CGFloat>(w), static_cast<CGFloat>(h)), w, csSRGB());
    if (!source || !destination)
        return nullptr;
    _boxBlurBitmap(static_cast<const std::uint32_t*>(CGBitmapContextGetData(source)),
        static_cast<std::uint32_t*>(CGBitmapContextGetData(destination)), static_cast<std::uint32_t>(width),
        static_cast<std::uint32_t>(height), boxDim);
    return CGBitmapContextCreateImage(destination);
}

CGImageRef ZRCreateBoxBlurredImage(CGImageRef image, int boxDim)
{
    try {
        return createBlurredImage(image, boxDim);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
