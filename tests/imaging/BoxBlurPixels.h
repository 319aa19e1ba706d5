#pragma once

#include <CoreGraphics/CGImage.h>
#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRBoxBlur.h>

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

/// Pixels before or after a blur: red in the lowest byte, alpha in the highest.
struct BoxBlurPixels {
    std::uint32_t width, height;
    std::vector<std::uint32_t> values;

    bool operator==(const BoxBlurPixels&) const = default;
};

inline BoxBlurPixels makeBlurPixels(std::uint32_t width, std::uint32_t height, std::uint32_t value = 0)
{
    return {width, height, std::vector<std::uint32_t>(std::size_t{width} * height, value)};
}

/// Arbitrary bytes, premultiplied or not: the blur treats the channels independently.
inline BoxBlurPixels randomBlurPixels(std::uint32_t width, std::uint32_t height, std::mt19937& random)
{
    auto pixels = makeBlurPixels(width, height);
    for (auto& value : pixels.values)
        value = random();
    return pixels;
}

/// The first difference; "" if the pixels are equal.
inline std::string firstBlurDifference(const BoxBlurPixels& actual, const BoxBlurPixels& expected)
{
    if (actual.width != expected.width || actual.height != expected.height)
        return "another size";
    for (std::size_t i = 0; i < actual.values.size(); ++i) {
        if (actual.values[i] == expected.values[i])
            continue;
        char text[100];
        std::snprintf(text, sizeof text, "%08x and not %08x in column %zu of row %zu", actual.values[i],
            expected.values[i], i % actual.width, i / actual.width);
        return text;
    }
    return "";
}

inline BoxBlurPixels blurredDirectly(const BoxBlurPixels& pixels, std::int32_t boxDim)
{
    auto result = makeBlurPixels(pixels.width, pixels.height, 0xABABABAB);
    _boxBlurBitmap(pixels.values.data(), result.values.data(), pixels.width, pixels.height, boxDim);
    return result;
}

/// An image of the unchanged pixels.
inline RetainPtr<CGImage> makeBlurImage(
    const BoxBlurPixels& pixels, CGImageAlphaInfo alpha = kCGImageAlphaPremultipliedLast)
{
    const auto data = NSData::dataWithBytes(pixels.values.data(), 4 * pixels.values.size());
    const auto provider = adopt(CGDataProviderCreateWithCFData(data));
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return adopt(CGImageCreate(pixels.width, pixels.height, 8, 32, 4UL * pixels.width, space, alpha,
        provider.get(), nullptr, true, kCGRenderingIntentDefault));
}

/// The pixels of an image with premultiplied alpha last and unpadded rows. None for null.
inline BoxBlurPixels blurPixelsOf(CGImageRef image)
{
    auto pixels = makeBlurPixels(static_cast<std::uint32_t>(CGImageGetWidth(image)),
        static_cast<std::uint32_t>(CGImageGetHeight(image)));
    const auto data = CGDataProviderCopyData(CGImageGetDataProvider(image));
    if (data && data->length() == 4 * pixels.values.size())
        std::memcpy(pixels.values.data(), data->bytes(), data->length());
    return pixels;
}
