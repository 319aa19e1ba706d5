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

/// How the bytes of one pixel are to be read. 8 bits per component, in memory order.
enum class CGPixelFormat : std::uint8_t {
    RGBAPremultiplied,
    ARGBPremultiplied,
    RGBAStraight,
    ARGBStraight,
    RGBX,  ///< opaque, the fourth byte means nothing
    XRGB,  ///< opaque, the first byte means nothing
    RGB,   ///< opaque, three bytes
    Gray,  ///< opaque, one byte
    Alpha, ///< one byte; high values let paint through
    Mask,  ///< one byte; low values let paint through
};

/// What an image is, apart from its reference count.
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

/// The record behind CGImageRef. Checked when it was made: all rows lie within the provider's bytes.
struct CGImage final : CGCounted, CGImageProperties {
    explicit CGImage(const CGImageProperties& properties) noexcept
        : CGImageProperties(properties)
    {
    }
    CGImage(const CGImage&) = delete;
    ~CGImage();

    /// Row 0, the top row.
    const std::uint8_t* bytes() const noexcept { return provider->bytes; }
    /// Never 0, and no other image's, not even of one that is gone.
    std::uint64_t serial() const noexcept { return _serial; }
    bool isMask() const noexcept { return format == CGPixelFormat::Mask; }

    /// The same picture ready to be drawn; lent, it lives as long as this image. Made on first use and kept;
    /// safe on any thread.
    ///
    /// A picture with colour or gray becomes RGBAPremultiplied in sRGB (RGBX where it is opaque), Alpha and
    /// Mask become Alpha. The first byte's address and `bytesPerRow` are multiples of 4. An image that is all
    /// that already is its own result. Of the result only format, size and bytes mean anything. Null when
    /// there is no memory.
    KORVID_EXPORT const CGImage* drawable() const; // exported for the tests

private:
    bool isDrawable() const noexcept;

    static inline std::atomic<std::uint64_t> lastSerial{0};

    const std::uint64_t _serial = ++lastSerial;
    mutable std::atomic<const CGImage*> _drawable{nullptr}; ///< owned; null until it is asked for
};

/// An image of its own copy of `height` rows of pixels at `pixels`: what a bitmap context's CreateImage hands
/// out. Rows become as short as 4-byte alignment allows. Null, with a line in the log, as CGImageCreate.
/// Exported for the tests.
[[nodiscard]] KORVID_EXPORT CGImageRef CGImageCreateWithCopiedPixels(const void* pixels, std::size_t width,
    std::size_t height, std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo);
