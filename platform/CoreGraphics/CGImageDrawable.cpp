#include "CoreGraphics/CGImageInternal.h"

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/LargePages.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using Byte = std::uint8_t;
using Table = std::array<Byte, 256>;

/// a · b / 255, rounded to the nearest.
Byte multiply(Byte a, Byte b)
{
    const unsigned product = a * b + 128U;
    return static_cast<Byte>((product + (product >> 8)) >> 8);
}

/// The sRGB byte of each sample of a gray space.
Table sRGBFromGray(const CGColorSpace& space)
{
    Table table;
    for (unsigned sample = 0; sample < 256; ++sample) {
        const CGFloat components[] = {sample / 255.0, 1};
        table[sample] = static_cast<Byte>(std::lround(space.rgba(components).red * 255));
    }
    return table;
}

/// Calls `convert(from, to)` for each pixel of a row.
template <std::size_t fromSize, std::size_t toSize, class Convert>
void convertRow(const Byte* from, Byte* to, std::size_t width, Convert convert)
{
    for (std::size_t x = 0; x < width; ++x)
        convert(from + fromSize * x, to + toSize * x);
}

/// Moves alpha, or the unused byte, from the first to the last byte of a pixel.
void rotate(const Byte* from, Byte* to)
{
    to[3] = from[0];
    std::memmove(to, from + 1, 3);
}

void premultiply(Byte red, Byte green, Byte blue, Byte alpha, Byte* to)
{
    to[0] = multiply(red, alpha);
    to[1] = multiply(green, alpha);
    to[2] = multiply(blue, alpha);
    to[3] = alpha;
}

/// Writes one row in the format that CGImage::drawable() documents. `grays` is used for gray images only.
void convertRow(CGPixelFormat format, const Byte* from, Byte* to, std::size_t width, const Table& grays)
{
    switch (format) {
    case CGPixelFormat::RGBAPremultiplied:
    case CGPixelFormat::RGBX:
        std::memcpy(to, from, 4 * width);
        return;
    case CGPixelFormat::Alpha:
        std::memcpy(to, from, width);
        return;
    case CGPixelFormat::ARGBPremultiplied:
    case CGPixelFormat::XRGB:
        return convertRow<4, 4>(from, to, width, rotate);
    case CGPixelFormat::RGBAStraight:
        return convertRow<4, 4>(
            from, to, width, [](const Byte* p, Byte* to) { premultiply(p[0], p[1], p[2], p[3], to); });
    case CGPixelFormat::ARGBStraight:
        return convertRow<4, 4>(
            from, to, width, [](const Byte* p, Byte* to) { premultiply(p[1], p[2], p[3], p[0], to); });
    case CGPixelFormat::RGB:
        return convertRow<3, 4>(from, to, width, [](const Byte* p, Byte* to) {
            std::memcpy(to, p, 3);
            to[3] = 255;
        });
    case CGPixelFormat::Gray:
        return convertRow<1, 4>(from, to, width, [&grays](const Byte* p, Byte* to) {
            std::memset(to, grays[*p], 3);
            to[3] = 255;
        });
    case CGPixelFormat::Mask:
        return convertRow<1, 1>(
            from, to, width, [](const Byte* p, Byte* to) { *to = static_cast<Byte>(255 - *p); });
    }
}

CGPixelFormat drawableFormat(CGPixelFormat format)
{
    switch (format) {
    case CGPixelFormat::Alpha:
    case CGPixelFormat::Mask:
        return CGPixelFormat::Alpha;
    case CGPixelFormat::RGBX:
    case CGPixelFormat::XRGB:
    case CGPixelFormat::RGB:
    case CGPixelFormat::Gray:
        return CGPixelFormat::RGBX;
    default:
        return CGPixelFormat::RGBAPremultiplied;
    }
}

std::size_t alignedToFour(std::size_t size)
{
    return (size + 3) & ~std::size_t{3};
}

void freePixels(void*, const void* data, std::size_t)
{
    std::free(const_cast<void*>(data));
}

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// Rows of pixels in memory that this object owns.
struct Pixels {
    /// The bytes are null when memory is exhausted.
    Pixels(std::size_t bytesPerRow, std::size_t height)
    {
        if (!__builtin_mul_overflow(bytesPerRow, height, &size))
            bytes.reset(static_cast<Byte*>(std::malloc(size)));
        adviseLargePages(bytes.get(), size);
    }

    /// Transfers the memory to a new provider, which frees it.
    RetainPtr<CGDataProvider> makeProvider()
    {
        return adopt(CGDataProviderCreateWithData(nullptr, bytes.release(), size, freePixels));
    }

    std::size_t size = 0;
    std::unique_ptr<Byte, FreeDeleter> bytes;
};

CGImage* createDrawable(const CGImage& image)
{
    CGImageProperties properties = image;
    properties.format = drawableFormat(image.format);
    properties.bitsPerPixel = properties.format == CGPixelFormat::Alpha ? 8 : 32;
    properties.bytesPerRow = alignedToFour(image.width * properties.bitsPerPixel / 8);
    Pixels pixels(properties.bytesPerRow, image.height);
    if (!pixels.bytes)
        return nullptr;

    const Table grays = image.format == CGPixelFormat::Gray ? sRGBFromGray(*image.space) : Table{};
    for (std::size_t y = 0; y < image.height; ++y)
        convertRow(image.format, image.bytes() + y * image.bytesPerRow,
            pixels.bytes.get() + y * properties.bytesPerRow, image.width, grays);
    properties.provider = pixels.makeProvider();
    return new CGImage(properties);
}

} // namespace

CGImage::~CGImage()
{
    CGImageRelease(const_cast<CGImage*>(_drawable.load(std::memory_order_acquire)));
}

bool CGImage::isDrawable() const noexcept
{
    return format == drawableFormat(format) && bytesPerRow % 4 == 0
        && reinterpret_cast<std::uintptr_t>(bytes()) % 4 == 0;
}

const CGImage* CGImage::drawable() const
{
    if (isDrawable())
        return this;
    const CGImage* known = _drawable.load(std::memory_order_acquire);
    if (known)
        return known;
    CGImage* made = createDrawable(*this);
    // If two threads convert the image at the same time, the first result is used.
    if (_drawable.compare_exchange_strong(known, made, std::memory_order_acq_rel))
        return made;
    CGImageRelease(made);
    return known;
}

CGImageRef CGImageCreateWithCopiedPixels(const void* pixels, std::size_t width, std::size_t height,
    std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo)
{
    const std::size_t rowBytes = width * (bitsPerPixel / 8);
    Pixels copy(alignedToFour(rowBytes), height);
    if (!copy.bytes) {
        CGLogMisuse(__func__, "no image: there is no memory");
        return nullptr;
    }
    const auto from = static_cast<const Byte*>(pixels);
    for (std::size_t y = 0; y < height; ++y)
        std::memcpy(copy.bytes.get() + y * alignedToFour(rowBytes), from + y * bytesPerRow, rowBytes);
    return CGImageCreate(width, height, 8, bitsPerPixel, alignedToFour(rowBytes), space, bitmapInfo,
        copy.makeProvider().get(), nullptr, true, kCGRenderingIntentDefault);
}
