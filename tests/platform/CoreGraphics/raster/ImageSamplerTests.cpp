// Images under every kind of transform against the plain rule in double precision, on each kind of vector
// unit.

#include "CoreGraphics/raster/ImageSampler.h"
#include "support/EachVectorUnit.h"

#include <Foundation/NSData.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kImageWidth = 83; // not a multiple of a vector's length
constexpr int kImageHeight = 61;
/// Results are rounded once; the parts between pixels are cut off after 16 bits.
constexpr double kSampleTolerance = 0.55;

using Bytes = std::vector<unsigned char>;

struct Picture {
    CGImageAlphaInfo alphaInfo = kCGImageAlphaPremultipliedLast;
    int width = kImageWidth;
    int height = kImageHeight;
    Bytes bytes = {};

    int channels() const { return alphaInfo == kCGImageAlphaOnly ? 1 : 4; }
    /// Beyond the edges the picture continues its border.
    double at(int x, int y, int channel) const
    {
        if (alphaInfo == kCGImageAlphaNoneSkipLast && channel == 3)
            return 255;
        const int column = std::clamp(x, 0, width - 1);
        const int row = std::clamp(y, 0, height - 1);
        const int index = (row * width + column) * channels() + channel;
        return bytes[std::size_t(index)];
    }
    RetainPtr<CGImage> image() const
    {
        const auto provider =
            adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(bytes.data(), bytes.size()).get()));
        const auto space = adopt(CGColorSpaceCreateDeviceRGB());
        const int bytesPerRow = width * channels();
        const int bitsPerPixel = 8 * channels();
        return adopt(CGImageCreate(std::size_t(width), std::size_t(height), 8, std::size_t(bitsPerPixel),
            std::size_t(bytesPerRow), space, CGBitmapInfo(alphaInfo), provider, nullptr, true,
            kCGRenderingIntentDefault));
    }
};

/// Random premultiplied pixels, among them many of greatest contrast.
Picture randomPicture(CGImageAlphaInfo alphaInfo, int width = kImageWidth, int height = kImageHeight)
{
    std::mt19937 random(17);
    const auto byte = [&] {
        const unsigned value = random();
        return value % 3 == 0 ? (value / 3 % 2) * 255 : value / 8 % 256;
    };
    Picture picture{alphaInfo, width, height};
    for (int i = 0; i < width * height; ++i) {
        const unsigned alpha = byte();
        for (int c = 0; c < picture.channels() - 1; ++c)
            picture.bytes.push_back(static_cast<unsigned char>(
                alphaInfo == kCGImageAlphaNoneSkipLast ? byte() : byte() * alpha / 255));
        picture.bytes.push_back(static_cast<unsigned char>(alpha));
    }
    return picture;
}

struct Case {
    std::string name;
    CGAffineTransform imageFromPixel;
    ImageFilter filter = ImageFilter::Linear;
};

CGAffineTransform turned(double angle, double scale)
{
    return {scale * std::cos(angle), scale * std::sin(angle), -scale * std::sin(angle),
        scale * std::cos(angle), 11.3, 7.8};
}

const std::vector<Case>& cases()
{
    static const std::vector<Case> cases{
        {"own size", {1, 0, 0, 1, 5, 3}},
        {"own size, upside down", {1, 0, 0, -1, 5, 50}},
        {"own size, mirrored", {-1, 0, 0, 1, 60, 3}},
        {"between pixels", {1, 0, 0, 1, 4.7, 3.4}},
        {"between pixels, upside down", {1, 0, 0, -1, 4.7, 50.2}},
        {"between pixels, beyond the left edges", {1, 0, 0, 1, -3.3, -2.6}},
        {"between pixels, beyond the right edges", {1, 0, 0, 1, 50.25, 30.75}},
        {"between columns", {1, 0, 0, 1, 4.25, 3}},
        {"between rows", {1, 0, 0, 1, 4, 3.75}},
        {"enlarged", {0.4, 0, 0, 0.3, 2.2, 5.1}},
        {"enlarged, mirrored", {-0.4, 0, 0, 0.3, 40.2, 5.1}},
        {"enlarged, beyond the edges", {0.5, 0, 0, 0.5, -3.3, -2.2}},
        {"shrunk without a mean", {2.3, 0, 0, 1.9, 3.1, 2.7}},
        {"shrunk much without a mean", {2.3, 0, 0, 3.1, 3.1, 2.7}},
        {"shrunk much without a mean, beyond the edges", {5.2, 0, 0, -4.7, -12.3, 66.1}},
        {"columns between rows, shrunk without a mean", {1, 0, 0, 2.5, 4.3, 2.7}},
        {"half", {2, 0, 0, 2, 3, 2}},
        {"half, upside down", {2, 0, 0, -2, 3, 52}},
        {"turned", turned(0.4, 1)},
        {"turned and enlarged", turned(2.1, 0.3)},
        {"turned by a right angle", {0, 1, -1, 0, 50, 4}},
        {"sheared", {1.1, 0.2, -0.7, 0.9, 20.4, 1.3}},
        {"nearest, enlarged", {0.4, 0, 0, 0.3, 2.2, 5.1}, ImageFilter::Nearest},
        {"nearest, shrunk", {2.37, 0, 0, 2.31, 2.213, 5.137}, ImageFilter::Nearest},
        {"nearest, turned", turned(0.4, 0.7), ImageFilter::Nearest},
        {"mean of half", {2, 0, 0, 2, 3, 2}, ImageFilter::Mean},
        {"mean", {2.524, 0, 0, 2.844, 1.3, 2.1}, ImageFilter::Mean},
        {"mean, upside down and mirrored", {-2.524, 0, 0, -2.844, 80, 59}, ImageFilter::Mean},
        {"mean of columns", {2.7, 0, 0, 0.6, 1.3, 2.1}, ImageFilter::Mean},
        {"mean of rows", {0.6, 0, 0, 2.7, 1.3, 2.1}, ImageFilter::Mean},
        {"mean of many", {11.8, 0, 0, 13.4, 0.3, 0.4}, ImageFilter::Mean},
        {"mean of very many", {21.3, 0, 0, 23.4, 0.3, 0.4}, ImageFilter::Mean},
        {"mean of very many columns", {17.2, 0, 0, 1.5, 0.3, 0.4}, ImageFilter::Mean},
        {"mean beyond the edges", {4.6, 0, 0, 3.3, -21.3, -12.2}, ImageFilter::Mean},
        {"mean of hardly shrunk is linear", {1.2, 0, 0, 1.3, 3.3, 2.6}, ImageFilter::Mean},
        {"mean of turned is linear", turned(0.4, 1), ImageFilter::Mean},
        {"mean of turned", turned(0.4, 2.5), ImageFilter::Mean},
        {"mean of hardly turned", turned(0.01, 1.5), ImageFilter::Mean},
        {"mean of turned by a right angle", {0, 2.5, -2.7, 0, 70, 4}, ImageFilter::Mean},
        {"mean of turned, many", turned(-2, 9.3), ImageFilter::Mean},
        {"mean of sheared", {2.1, 0.6, -1.7, 1.9, 31.4, 1.3}, ImageFilter::Mean},
        {"mean of extremely sheared", {11.4, -7.2, 12.6, -8.6, 31.4, 40.3}, ImageFilter::Mean},
        {"mean of sheared, columns", {-2.3, 0.2, 0.4, 0.7, 60.4, 1.3}, ImageFilter::Mean},
        {"mean of sheared, rows", {0.3, 1.9, 0.4, -0.7, 10.4, 20.3}, ImageFilter::Mean},
    };
    return cases;
}

/// The part of pixel `i` in a sample around `center`.
double weightOf(int i, double center, double step, ImageFilter filter)
{
    if (filter == ImageFilter::Nearest)
        return i == int(std::floor(center)) ? 1 : 0;
    const double size = filter == ImageFilter::Mean && std::abs(step) > 4.0 / 3 ? std::abs(step) : 1;
    const double begin = std::max<double>(center - size / 2, i);
    const double end = std::min<double>(center + size / 2, i + 1);
    return std::max(end - begin, 0.0) / size;
}

double sampleOf(const Picture& picture, const Case& test, int column, int row, int channel)
{
    const CGAffineTransform& t = test.imageFromPixel;
    const CGPoint center = CGPointApplyAffineTransform({column + 0.5, row + 0.5}, t);
    double stepX = std::hypot(t.a, t.c);
    double stepY = std::hypot(t.b, t.d);
    // The mean is over at most four times the area of a drawn pixel.
    const double excess = stepX * stepY / (4 * std::abs(t.a * t.d - t.b * t.c));
    if (excess > 1) {
        stepX /= std::sqrt(excess);
        stepY /= std::sqrt(excess);
    }
    double sum = 0;
    for (int y = int(center.y - stepY / 2) - 2; y <= int(center.y + stepY / 2) + 2; ++y) {
        const double weight = weightOf(y, center.y, stepY, test.filter);
        for (int x = int(center.x - stepX / 2) - 2; x <= int(center.x + stepX / 2) + 2; ++x)
            sum += weightOf(x, center.x, stepX, test.filter) * weight * picture.at(x, y, channel);
    }
    return sum;
}

/// The pixels drawn in an area.
Bytes drawn(ImageSampler& sampler, const PixelRect& area)
{
    const int channels = sampler.isAlphaOnly() ? 1 : 4;
    Bytes bytes;
    for (int y = area.top; y < area.bottom; ++y) {
        const unsigned char* row = sampler.row(area.left, y, area.width());
        bytes.insert(bytes.end(), row, row + std::ptrdiff_t(channels) * area.width());
    }
    return bytes;
}

const char* nameOf(CGImageAlphaInfo alphaInfo)
{
    return alphaInfo == kCGImageAlphaOnly        ? "alphas"
        : alphaInfo == kCGImageAlphaNoneSkipLast ? "opaque"
                                                 : "translucent";
}

constexpr CGImageAlphaInfo kAlphaInfos[]{
    kCGImageAlphaPremultipliedLast, kCGImageAlphaNoneSkipLast, kCGImageAlphaOnly};
constexpr PixelRect kArea{0, 0, 27, 19};

} // namespace

TEST(ImageSampler, IsExactUnderEveryTransformOnEachVectorUnit)
{
    for (const CGImageAlphaInfo alphaInfo : kAlphaInfos) {
        const Picture picture = randomPicture(alphaInfo);
        const auto image = picture.image();
        for (const Case& test : cases()) {
            SCOPED_TRACE(test.name + ", " + nameOf(alphaInfo));
            Bytes first;
            onEachVectorUnit([&] {
                ImageSampler sampler;
                ASSERT_TRUE(sampler.begin(*image->drawable(), test.imageFromPixel, test.filter, kArea));
                const Bytes bytes = drawn(sampler, kArea);
                if (first.empty())
                    first = bytes;
                ASSERT_TRUE(bytes == first); // the same on every unit
            });
            for (std::size_t i = 0; i < first.size(); ++i) {
                const int pixel = int(i) / picture.channels();
                const int column = pixel % kArea.width();
                const int row = pixel / kArea.width();
                ASSERT_NEAR(first[i], sampleOf(picture, test, column, row, int(i) % picture.channels()),
                    kSampleTolerance)
                    << "column " << column << ", row " << row;
            }
        }
    }
}

TEST(ImageSampler, PartsOfRowsAreTheSameAsWholeRows)
{
    const Picture picture = randomPicture(kCGImageAlphaPremultipliedLast);
    const auto image = picture.image();
    ImageSampler sampler;
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        ASSERT_TRUE(sampler.begin(*image->drawable(), test.imageFromPixel, test.filter, kArea));
        const Bytes whole = drawn(sampler, kArea);
        for (int y = kArea.bottom - 1; y >= kArea.top; y -= 3) {
            for (const auto& [begin, count] : {std::pair{20, 7}, {3, 1}, {3, 13}}) {
                const unsigned char* part = sampler.row(begin, y, count);
                const auto expected = whole.begin() + 4 * (std::ptrdiff_t(y) * kArea.width() + begin);
                ASSERT_TRUE(std::equal(part, part + 4 * std::ptrdiff_t(count), expected)) << y;
            }
        }
    }
}

TEST(ImageSampler, NoColourExceedsItsAlpha)
{
    const auto image = randomPicture(kCGImageAlphaPremultipliedLast).image();
    ImageSampler sampler;
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        ASSERT_TRUE(sampler.begin(*image->drawable(), test.imageFromPixel, test.filter, kArea));
        const Bytes bytes = drawn(sampler, kArea);
        for (std::size_t i = 0; i < bytes.size(); i += 4)
            ASSERT_LE(*std::max_element(&bytes[i], &bytes[i] + 3), bytes[i + 3]) << i / 4;
    }
}

TEST(ImageSampler, PicturesOfOnePixelOrOneLineContinueOnAllSides)
{
    constexpr PixelRect kAround{-3, -3, 6, 6};
    for (const CGImageAlphaInfo alphaInfo : kAlphaInfos) {
        for (const auto& [width, height] : {std::pair{1, 1}, {1, 7}, {7, 1}}) {
            const Picture picture = randomPicture(alphaInfo, width, height);
            const auto image = picture.image();
            ImageSampler sampler;
            for (const Case& test : cases()) {
                SCOPED_TRACE(testing::Message()
                    << test.name << ", " << nameOf(alphaInfo) << ", " << width << " x " << height);
                CGAffineTransform t = test.imageFromPixel;
                t.tx = 0.3;
                t.ty = 0.4;
                const Case near{test.name, t, test.filter};
                ASSERT_TRUE(sampler.begin(*image->drawable(), t, test.filter, kAround));
                const Bytes bytes = drawn(sampler, kAround);
                for (std::size_t i = 0; i < bytes.size(); ++i) {
                    const int pixel = int(i) / picture.channels();
                    ASSERT_NEAR(bytes[i],
                        sampleOf(picture, near, pixel % 9 - 3, pixel / 9 - 3, int(i) % picture.channels()),
                        kSampleTolerance);
                }
            }
        }
    }
}

// White beside black, turned by 45 degrees and shrunk to a third: away from the edge the colours stay, and at
// the edge there is their mean.
TEST(ImageSampler, ATurnedPictureIsAveragedWhereItShrinks)
{
    Picture picture{kCGImageAlphaNoneSkipLast, 90, 90};
    for (int i = 0; i < 90 * 90; ++i)
        picture.bytes.insert(picture.bytes.end(), 4, i % 90 < 45 ? 0 : 255);
    const auto image = picture.image();
    // The centre of pixel (10, 10) lies at the middle of the image.
    const double factor = 3 * std::numbers::sqrt2 / 2;
    const CGAffineTransform t{factor, factor, -factor, factor, 45, 45 - 21 * factor};
    ImageSampler sampler;
    ASSERT_TRUE(sampler.begin(*image->drawable(), t, ImageFilter::Mean, {0, 0, 21, 21}));
    const auto redAt = [&](int column, int row) { return int(*sampler.row(column, row, 1)); };
    EXPECT_EQ(redAt(10, 10), 128);
    EXPECT_EQ(redAt(14, 10), 255);
    EXPECT_EQ(redAt(6, 10), 0);
}

// Around the lengths at which another number of pixels is read, or weighed with another precision.
TEST(ImageSampler, MeansOfTurnedPicturesAreExactForEveryLength)
{
    constexpr PixelRect kSmallArea{0, 0, 7, 6};
    const Picture picture = randomPicture(kCGImageAlphaPremultipliedLast, 157, 139);
    const auto image = picture.image();
    for (const double length :
        {1.34, 2.0, 2.99, 3.0, 3.01, 6.98, 7.02, 10.99, 11.01, 14.97, 15.0, 15.03, 19.6}) {
        for (const double angle : {0.002, 0.7, 2.2, -1.3}) {
            SCOPED_TRACE(testing::Message() << "length " << length << ", angle " << angle);
            CGAffineTransform t = turned(angle, length);
            const CGPoint middle = CGPointApplyAffineTransform({3.5, 3}, t);
            t.tx += picture.width / 2.0 - middle.x;
            t.ty += picture.height / 2.0 - middle.y;
            const Case test{"", t, ImageFilter::Mean};
            Bytes first;
            onEachVectorUnit([&] {
                ImageSampler sampler;
                ASSERT_TRUE(sampler.begin(*image->drawable(), t, ImageFilter::Mean, kSmallArea));
                const Bytes bytes = drawn(sampler, kSmallArea);
                if (first.empty())
                    first = bytes;
                ASSERT_TRUE(bytes == first);
            });
            for (std::size_t i = 0; i < first.size(); ++i)
                ASSERT_NEAR(first[i], sampleOf(picture, test, int(i) / 4 % 7, int(i) / 28, int(i) % 4),
                    kSampleTolerance)
                    << i;
        }
    }
}

TEST(ImageSampler, TransformsOfAnyMagnitudeAreRefusedOrDrawn)
{
    const auto image = randomPicture(kCGImageAlphaPremultipliedLast, 9, 7).image();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double numbers[]{
        0, 1, -1e-300, 1e-9, 1e9, -1e18, 1e99, 1e101, kInfinity, std::numeric_limits<double>::quiet_NaN()};
    ImageSampler sampler;
    std::mt19937 random(5);
    const auto any = [&] { return numbers[random() % std::size(numbers)]; };
    int drawnCount = 0;
    for (int i = 0; i < 3000; ++i) {
        const CGAffineTransform t{any(), any(), any(), any(), any(), any()};
        const double greatest = std::max(
            {std::abs(t.a), std::abs(t.b), std::abs(t.c), std::abs(t.d), std::abs(t.tx), std::abs(t.ty)});
        for (const ImageFilter filter : {ImageFilter::Nearest, ImageFilter::Linear, ImageFilter::Mean}) {
            if (!sampler.begin(*image->drawable(), t, filter, kArea))
                continue;
            ASSERT_LE(greatest, 1e100);
            EXPECT_EQ(drawn(sampler, kArea).size(), 4U * 27 * 19);
            ++drawnCount;
        }
    }
    EXPECT_GT(drawnCount, 500);
}
