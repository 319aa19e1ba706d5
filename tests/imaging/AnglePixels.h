#pragma once

#include "PlainAngles.h"

#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRAngularGradient.h>

#include <gtest/gtest.h>
#include <vector>

/// The values of an angle image, row by row from the top, without row padding.
struct AnglePixels {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint8_t> values{};

    int at(std::size_t column, std::size_t row) const { return values[row * width + column]; }
    bool operator==(const AnglePixels&) const = default;
};

inline AnglePixels pixelsOf(CGImageRef image)
{
    AnglePixels pixels{CGImageGetWidth(image), CGImageGetHeight(image)};
    const auto data = CGDataProviderCopyData(CGImageGetDataProvider(image));
    for (std::size_t row = 0; row < pixels.height; ++row) {
        const auto* const first =
            static_cast<const std::uint8_t*>(data->bytes()) + row * CGImageGetBytesPerRow(image);
        pixels.values.insert(pixels.values.end(), first, first + pixels.width);
    }
    return pixels;
}

/// The library's image; without pixels if it is null.
inline AnglePixels angles(bool isIncreasing, double width, double height, double ringWidth = 0)
{
    const auto image = adopt(ZRCreateAngularGradientImage(isIncreasing, width, height, ringWidth));
    return image ? pixelsOf(image) : AnglePixels{};
}

/// The image of the reference implementation.
inline AnglePixels plain(bool isIncreasing, std::size_t width, std::size_t height)
{
    AnglePixels pixels{width, height, std::vector<std::uint8_t>(width * height)};
    plainAngles(pixels.values.data(), width, height, isIncreasing);
    return pixels;
}

/// Whether all pixels are equal; otherwise the message names the first difference.
inline testing::AssertionResult areSame(const AnglePixels& actual, const AnglePixels& expected)
{
    if (actual.width != expected.width || actual.height != expected.height)
        return testing::AssertionFailure() << actual.width << " x " << actual.height << " pixels instead of "
                                           << expected.width << " x " << expected.height;
    for (std::size_t i = 0; i < actual.values.size(); ++i) {
        if (actual.values[i] != expected.values[i])
            return testing::AssertionFailure()
                << "column " << i % actual.width << ", row " << i / actual.width << " of " << actual.width
                << " x " << actual.height << ": " << int(actual.values[i]) << " instead of "
                << int(expected.values[i]);
    }
    return testing::AssertionSuccess();
}
