#include <KorvidAppKit/ZRBoxBlur.h>

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "imaging/BoxBlurRule.h"
#include "imaging/BoxBlurTiles.h"
#include "imaging/ImagingQueue.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <sys/mman.h>

namespace {

/// The longest side of an image that a context draws.
constexpr std::size_t kLongestSide = 32766;

bool canBlur(std::size_t width, std::size_t height)
{
    return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide;
}

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T> using Memory = std::unique_ptr<T[], FreeDeleter>;

/// `count` transparent pixels; null where there is no memory.
Memory<std::uint32_t> makePixels(std::int64_t count)
{
    return Memory<std::uint32_t>(
        static_cast<std::uint32_t*>(std::calloc(static_cast<std::size_t>(count), sizeof(std::uint32_t))));
}

/// `size` bytes of any value, aligned for all that C++ has; null where there is no memory.
Memory<std::uint8_t> makeBytes(std::size_t size)
{
    return Memory<std::uint8_t>(static_cast<std::uint8_t*>(std::malloc(size)));
}

/// Bytes for a result. For a large one the system is asked for large pages: handing out small ones, each with
/// a trap of its own, takes it longer than the blur itself.
Memory<std::uint8_t> makeResult(std::size_t size)
{
    if (size < RunningBoxBlur::kLargeResult)
        return makeBytes(size);
    constexpr std::size_t largePage = std::size_t{1} << 21;
    const std::size_t wholePages = (size + largePage - 1) / largePage * largePage;
    Memory<std::uint8_t> bytes(static_cast<std::uint8_t*>(std::aligned_alloc(largePage, wholePages)));
    if (bytes)
        madvise(bytes.get(), wholePages, MADV_HUGEPAGE); // a wish: nothing depends on it
    return bytes;
}

/// A context that takes over `pixels`, rows of `rowPixels`. Null where there are none.
RetainPtr<CGContext> makeContext(
    Memory<std::uint32_t> pixels, CGSize size, std::int64_t rowPixels, CGColorSpaceRef space)
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

/// A context of its own with a part of the image, rows of `rowPixels`. Null where there is no memory for it.
RetainPtr<CGContext> drawPart(
    CGImageRef image, BoxBlurSpan rows, BoxBlurSpan columns, std::int64_t rowPixels, CGColorSpaceRef space)
{
    const auto size = CGSizeMake(
        static_cast<CGFloat>(columns.end - columns.first), static_cast<CGFloat>(rows.end - rows.first));
    auto context = makeContext(makePixels(rowPixels * (rows.end - rows.first)), size, rowPixels, space);
    const auto width = static_cast<CGFloat>(CGImageGetWidth(image));
    const auto height = static_cast<CGFloat>(CGImageGetHeight(image));
    // On transparent ground a copy comes to the same as what is drawn over it, and takes less time. Rows
    // count from the top, and y from below.
    CGContextSetBlendMode(context, kCGBlendModeCopy);
    CGContextDrawImage(context,
        CGRectMake(
            -static_cast<CGFloat>(columns.first), static_cast<CGFloat>(rows.end) - height, width, height),
        image);
    return context;
}

/// An image that takes over `pixels`, rows without gaps.
CGImageRef createImage(
    Memory<std::uint8_t> pixels, std::size_t width, std::size_t height, CGColorSpaceRef space)
{
    const auto release = [](void*, const void* data, std::size_t) { std::free(const_cast<void*>(data)); };
    const auto provider =
        adopt(CGDataProviderCreateWithData(nullptr, pixels.release(), 4 * width * height, release));
    return CGImageCreate(width, height, 8, 32, 4 * width, space, kCGImageAlphaPremultipliedLast,
        provider.get(), nullptr, true, kCGRenderingIntentDefault);
}

/// Writes the result; false where there is no memory.
bool blurImage(CGImageRef image, const RunningBoxBlur& blur, std::uint8_t* destination, CGColorSpaceRef space)
{
    const BoxBlurTiles tiles(blur);
    const std::int64_t perRow = tiles.columns.count();
    const auto count = static_cast<std::size_t>(perRow * tiles.rows.count());
    const auto blurTile = [&](std::int64_t i) {
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
        if (allDone && !blurTile(static_cast<std::int64_t>(i)))
            allDone = false;
    };
    if (BoxBlurTiles::areShared(blur)) {
        dispatch_apply(count, imagingQueue(), blurNumber);
    } else {
        for (std::size_t i = 0; i < count; ++i)
            blurNumber(i);
    }
    return allDone;
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
    const std::size_t width = CGImageGetWidth(image), height = CGImageGetHeight(image);
    if (!canBlur(width, height))
        return nullptr;
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    auto pixels = makeResult(4 * width * height);
    if (!pixels)
        return nullptr;
    if (blursIntoNothing(boxDim))
        std::fill_n(pixels.get(), 4 * width * height, std::uint8_t{0});
    else if (!blurImage(image, {static_cast<std::int64_t>(width), static_cast<std::int64_t>(height), boxDim},
                 pixels.get(), space))
        return nullptr;
    return createImage(std::move(pixels), width, height, space);
}
