#include <AppKit/NSBitmapImageRep.h>

#include "AppKit/PNGCodec.h"
#include "AppKit/PixelLayout.h"

#include <AppKit/NSColor.h>

#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSData.h>

#include <algorithm>
#include <new>

/// Writable pixels.
struct NSBitmapImageRep::Memory {
    CGImageProperties properties;    ///< without a provider
    std::vector<std::uint8_t> owned; ///< empty when the bytes are the caller's
    std::uint8_t* bytes;
};

/// A non-owning view of the pixels, in an image or in memory.
struct NSBitmapImageRep::Pixels {
    const CGImageProperties& properties;
    const std::uint8_t* bytes;

    std::size_t width() const { return properties.width; }
    std::size_t height() const { return properties.height; }
    const std::uint8_t* row(std::size_t y) const { return bytes + y * properties.bytesPerRow; }
    PixelLayout layout() const { return PixelLayout::of(properties.format); }
    /// Number of bytes that may be read: the last row may end with its last pixel.
    std::size_t length() const
    {
        return properties.bytesPerRow * (height() - 1) + width() * layout().bytesPerPixel;
    }
    /// The same with straight alpha, as PNG knows it.
    PNGPicture picture() const;
};

namespace {

/// Converts one row to a format of PNG files.
void copyRow(const std::uint8_t* pixel, const PixelLayout& layout, std::size_t width,
    PNGPicture::Format format, std::uint8_t* target)
{
    const int colors = format == PNGPicture::Format::Gray ? 1 : 3;
    for (std::size_t x = 0; x < width; ++x, pixel += layout.bytesPerPixel) {
        const std::uint8_t alpha = layout.alphaOf(pixel);
        for (int i = 0; i < colors; ++i) {
            const std::uint8_t color = layout.colorOf(pixel, i);
            *target++ = layout.isPremultiplied ? unpremultiplied(color, alpha) : color;
        }
        if (format == PNGPicture::Format::RGBA)
            *target++ = alpha;
    }
}

/// Makes an image that owns `bytes`, laid out as the properties say.
RetainPtr<CGImage> makeImage(CGImageProperties properties, std::vector<std::byte> bytes)
{
    const auto data = make<NSData>(std::move(bytes));
    properties.provider = adopt(CGDataProviderCreateWithCFData(data));
    return adopt(new CGImage(properties));
}

/// The picture of a PNG file in the format that Core Graphics draws fastest.
RetainPtr<CGImage> makeImage(const PNGPicture& picture)
{
    CGImageProperties properties{
        .width = picture.width,
        .height = picture.height,
        .bitsPerPixel = 8,
        .bytesPerRow = picture.width,
        .space = NSColorSpace::deviceGrayColorSpace()->CGColorSpace(),
        .bitmapInfo = kCGImageAlphaNone,
        .format = CGPixelFormat::Gray,
        .shouldInterpolate = true,
    };
    if (picture.format == PNGPicture::Format::Gray) {
        const auto* bytes = reinterpret_cast<const std::byte*>(picture.bytes.data());
        return makeImage(properties, {bytes, bytes + picture.bytes.size()});
    }

    const bool hasAlpha = picture.format == PNGPicture::Format::RGBA;
    properties.bitsPerPixel = 32;
    properties.bytesPerRow = picture.width * 4;
    properties.space = NSColorSpace::sRGBColorSpace()->CGColorSpace();
    properties.bitmapInfo = hasAlpha ? kCGImageAlphaPremultipliedLast : kCGImageAlphaNoneSkipLast;
    properties.format = hasAlpha ? CGPixelFormat::RGBAPremultiplied : CGPixelFormat::RGBX;

    std::vector<std::byte> bytes(properties.bytesPerRow * properties.height);
    const std::uint8_t* source = picture.bytes.data();
    for (auto target = bytes.begin(); target != bytes.end();) {
        const std::uint8_t alpha = hasAlpha ? source[3] : 255;
        for (int i = 0; i < 3; ++i)
            *target++ = std::byte(premultiplied(source[i], alpha));
        *target++ = std::byte(alpha);
        source += hasAlpha ? 4 : 3;
    }
    return makeImage(properties, std::move(bytes));
}

/// What `make` returns, or null when memory runs out.
template <std::invocable Make> std::invoke_result_t<Make> nullWithoutMemory(Make make)
{
    try {
        return make();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

PNGPicture NSBitmapImageRep::Pixels::picture() const
{
    const PixelLayout layout = this->layout();
    PNGPicture picture{layout.hasAlpha() ? PNGPicture::Format::RGBA
            : layout.isGray()            ? PNGPicture::Format::Gray
                                         : PNGPicture::Format::RGB,
        width(), height(), {}};
    const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
    picture.bytes.resize(bytesPerRow * picture.height);
    for (std::size_t y = 0; y < picture.height; ++y)
        copyRow(row(y), layout, picture.width, picture.format, picture.bytes.data() + y * bytesPerRow);
    return picture;
}

NSBitmapImageRep::NSBitmapImageRep(RetainPtr<::CGImage> image)
    : _image(std::move(image))
{
}

NSBitmapImageRep::NSBitmapImageRep(std::unique_ptr<Memory> memory)
    : _memory(std::move(memory))
{
}

NSBitmapImageRep::~NSBitmapImageRep() = default;

RetainPtr<NSBitmapImageRep> NSBitmapImageRep::initWithCGImage(RetainPtr<::CGImage> image)
{
    if (!image)
        return nullptr;
    return RetainPtr<NSBitmapImageRep>::adopt(new NSBitmapImageRep(std::move(image)));
}

RetainPtr<NSBitmapImageRep> NSBitmapImageRep::initWithData(const NSData* data)
{
    if (!data)
        return nullptr;
    return nullWithoutMemory([&]() -> RetainPtr<NSBitmapImageRep> {
        const auto picture = decodePNG(data->span());
        if (!picture)
            return nullptr;
        const auto image = makeImage(*picture);
        return initWithCGImage(image);
    });
}

RetainPtr<NSBitmapImageRep> NSBitmapImageRep::initWithBitmapDataPlanes(unsigned char** planes,
    NSInteger width, NSInteger height, NSInteger bitsPerSample, NSInteger samplesPerPixel, bool hasAlpha,
    bool isPlanar, const NSString& colorSpaceName, NSInteger rowBytes, NSInteger pixelBits)
{
    const NSColorSpace* const space = colorSpaceName == NSDeviceRGBColorSpace
        ? NSColorSpace::deviceRGBColorSpace()
        : colorSpaceName == NSCalibratedRGBColorSpace ? NSColorSpace::genericRGBColorSpace()
                                                      : nullptr;
    constexpr auto kMost = static_cast<NSInteger>(kMostPNGPixels);
    if (!space || bitsPerSample != 8 || samplesPerPixel != 4 || !hasAlpha || isPlanar
        || (pixelBits != 0 && pixelBits != 32) || width < 1 || height < 1 || width > kMost / height)
        return nullptr;
    if (rowBytes == 0)
        rowBytes = width * 4;
    if (rowBytes < width * 4 || rowBytes > kMost * 4 / height)
        return nullptr;

    return nullWithoutMemory([&] {
        auto memory = std::make_unique<Memory>();
        memory->properties = {
            .width = static_cast<std::size_t>(width),
            .height = static_cast<std::size_t>(height),
            .bitsPerPixel = 32,
            .bytesPerRow = static_cast<std::size_t>(rowBytes),
            .space = space->CGColorSpace(),
            .bitmapInfo = kCGImageAlphaPremultipliedLast,
            .format = CGPixelFormat::RGBAPremultiplied,
            .shouldInterpolate = true,
        };
        memory->bytes = planes ? planes[0] : nullptr;
        if (!memory->bytes) {
            memory->owned.resize(static_cast<std::size_t>(rowBytes * height));
            memory->bytes = memory->owned.data();
        }
        return RetainPtr<NSBitmapImageRep>::adopt(new NSBitmapImageRep(std::move(memory)));
    });
}

NSBitmapImageRep::Pixels NSBitmapImageRep::pixels() const
{
    if (_memory)
        return {_memory->properties, _memory->bytes};
    return {*_image, _image->bytes()};
}

NSInteger NSBitmapImageRep::pixelsWide() const
{
    return static_cast<NSInteger>(pixels().width());
}

NSInteger NSBitmapImageRep::pixelsHigh() const
{
    return static_cast<NSInteger>(pixels().height());
}

CGSize NSBitmapImageRep::size() const
{
    return {static_cast<CGFloat>(pixelsWide()), static_cast<CGFloat>(pixelsHigh())};
}

bool NSBitmapImageRep::hasAlpha() const
{
    return pixels().layout().hasAlpha();
}

NSInteger NSBitmapImageRep::bytesPerRow() const
{
    return static_cast<NSInteger>(pixels().properties.bytesPerRow);
}

unsigned char* NSBitmapImageRep::bitmapData()
{
    if (!_memory) {
        const Pixels pixels = this->pixels();
        auto memory = std::make_unique<Memory>();
        memory->properties = pixels.properties;
        memory->properties.provider = nullptr;
        memory->owned.resize(pixels.properties.bytesPerRow * pixels.height());
        std::copy_n(pixels.bytes, pixels.length(), memory->owned.begin());
        memory->bytes = memory->owned.data();
        _memory = std::move(memory);
        _image = nullptr;
    }
    return _memory->bytes;
}

RetainPtr<CGContext> NSBitmapImageRep::createContext()
{
    if (pixels().properties.format != CGPixelFormat::RGBAPremultiplied)
        return nullptr;
    unsigned char* const bytes = bitmapData();
    return adopt(CGBitmapContextCreate(bytes, _memory->properties.width, _memory->properties.height, 8,
        _memory->properties.bytesPerRow, _memory->properties.space, kCGImageAlphaPremultipliedLast));
}

RetainPtr<CGImage> NSBitmapImageRep::CGImage() const
{
    if (_image)
        return _image;
    const Pixels pixels = this->pixels();
    const auto* bytes = reinterpret_cast<const std::byte*>(pixels.bytes);
    return makeImage(pixels.properties, {bytes, bytes + pixels.length()});
}

RetainPtr<NSColor> NSBitmapImageRep::colorAtX(NSInteger x, NSInteger y) const
{
    const Pixels pixels = this->pixels();
    if (x < 0 || y < 0 || x >= pixelsWide() || y >= pixelsHigh())
        return nullptr;

    const PixelLayout layout = pixels.layout();
    const std::uint8_t* const pixel =
        pixels.row(static_cast<std::size_t>(y)) + static_cast<std::size_t>(x) * layout.bytesPerPixel;
    const std::uint8_t alpha = layout.alphaOf(pixel);
    const double one = layout.isPremultiplied && alpha ? alpha : 255;
    const auto component = [&](int i) { return std::min(layout.colorOf(pixel, i) / one, 1.0); };

    const auto space = NSColorSpace::initWithCGColorSpace(pixels.properties.space);
    if (!space) // a mask
        return NSColor::colorWithDeviceWhite(0, alpha / 255.0);
    const CGFloat components[] = {component(0), component(1), component(2), alpha / 255.0};
    if (layout.isGray())
        return NSColor::colorWithColorSpace(space, components + 2, 2);
    return NSColor::colorWithColorSpace(space, components, 4);
}

RetainPtr<NSData> NSBitmapImageRep::representationUsingType(
    NSBitmapImageFileType type, const NSDictionary* /*properties*/) const
{
    if (type != NSBitmapImageFileTypePNG)
        return nullptr;
    return nullWithoutMemory([&]() -> RetainPtr<NSData> {
        auto file = encodePNG(pixels().picture());
        if (file.empty())
            return nullptr;
        return make<NSData>(std::move(file));
    });
}
