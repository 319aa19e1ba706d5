#pragma once

#include "CoreGraphics/CGCounted.h"

#include <CoreGraphics/CGImage.h>

#include <atomic>

/// The record behind CGDataProviderRef.
struct CGDataProvider final : CGCounted {
    CGDataProvider(void* info, const void* data, std::size_t size,
        CGDataProviderReleaseDataCallback releaseData) noexcept
        : info(info)
        , bytes(static_cast<const std::uint8_t*>(data))
        , size(size)
        , releaseData(releaseData)
    {
    }
    CGDataProvider(const CGDataProvider&) = delete;
    ~CGDataProvider()
    {
        if (releaseData)
            releaseData(info, bytes, size);
    }

    void* const info;
    const std::uint8_t* const bytes; ///< null only when `size` is 0
    const std::size_t size;
    const CGDataProviderReleaseDataCallback releaseData;
};

/// The layout of one pixel: 8 bits per component, in memory order.
enum class CGPixelFormat : std::uint8_t {
    RGBAPremultiplied,
    ARGBPremultiplied,
    RGBAStraight,
    ARGBStraight,
    RGBX,  ///< opaque, the fourth byte is unused
    XRGB,  ///< opaque, the first byte is unused
    RGB,   ///< opaque, three bytes
    Gray,  ///< opaque, one byte
    Alpha, ///< one byte of coverage, 255 is full
    Mask,  ///< one byte of inverted coverage, 0 is full
};

/// All properties of an image but its reference count.
struct CGImageProperties {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bitsPerPixel = 0;
    std::size_t bytesPerRow = 0;
    RetainPtr<CGColorSpace> space = nullptr; ///< null for Alpha and Mask
    RetainPtr<CGDataProvider> provider = nullptr;
    CGBitmapInfo bitmapInfo = 0;
    CGColorRenderingIntent intent = kCGRenderingIntentDefault;
    CGPixelFormat format = CGPixelFormat::RGBAPremultiplied;
    bool shouldInterpolate = false;
};

/// The record behind CGImageRef. Invariant, checked at creation: all rows lie within the provider's bytes.
struct CGImage final : CGCounted, CGImageProperties {
    explicit CGImage(const CGImageProperties& properties) noexcept
        : CGImageProperties(properties)
    {
    }
    CGImage(const CGImage&) = delete;
    ~CGImage();

    /// The first byte of row 0, the top row.
    const std::uint8_t* bytes() const noexcept { return provider->bytes; }
    /// Never 0, and unique among all images, destroyed ones included.
    std::uint64_t serial() const noexcept { return _serial; }
    bool isMask() const noexcept { return format == CGPixelFormat::Mask; }

    /// The same image converted for drawing. Borrowed: valid as long as this image. Converted on first use
    /// and cached; safe on any thread.
    ///
    /// An image with colour or gray becomes RGBAPremultiplied in sRGB (RGBX if it is opaque), Alpha and Mask
    /// become Alpha. The first byte's address and `bytesPerRow` are multiples of 4. An image that meets all
    /// this already is returned itself. Of the result only format, size and bytes are meaningful. Null when
    /// memory is exhausted.
    KORVID_EXPORT const CGImage* drawable() const; // exported for the tests

private:
    bool isDrawable() const noexcept;

    static inline std::atomic<std::uint64_t> lastSerial{0};

    const std::uint64_t _serial = ++lastSerial;
    mutable std::atomic<const CGImage*> _drawable{nullptr}; ///< owned; null until first used
};

/// An image of a copy of `height` rows of pixels at `pixels`, as CGBitmapContextCreateImage returns it. Rows
/// are padded to 4 bytes only. Errors as for CGImageCreate. Exported for the tests.
[[nodiscard]] KORVID_EXPORT CGImageRef CGImageCreateWithCopiedPixels(const void* pixels, std::size_t width,
    std::size_t height, std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo);
