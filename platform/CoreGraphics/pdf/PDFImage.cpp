#include "CoreGraphics/pdf/PDFImage.h"

#include "CoreGraphics/pdf/PDFColorSpace.h"
#include "CoreGraphics/pdf/PDFFunction.h"
#include "CoreGraphics/pdf/PDFPixelLayer.h"
#include "CoreGraphics/pdf/PDFRecording.h"
#include "CoreGraphics/pdf/PDFSamples.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using ImageRef = std::shared_ptr<const PDFImage>;

PDFImageData dataOf(const PDFObject& stream, PDFRecording& recording)
{
    PDFRecording::Stream decoded = recording.decodeImage(stream);
    return {stream, std::move(decoded.bytes), std::move(decoded.lastFilter), std::move(decoded.parms)};
}

/// What samples stand for, a pair for each component: the Decode array, or the default where it is too short.
std::vector<PDFInterval> decodeOf(const PDFObject& dictionary, std::vector<PDFInterval> intervals)
{
    const PDFObject decode = dictionary["Decode"];
    if (decode.size() < 2 * intervals.size())
        return intervals;
    for (std::size_t i = 0; i < intervals.size(); ++i)
        intervals[i] = {decode.at(2 * i).number(), decode.at(2 * i + 1).number()};
    return intervals;
}

/// Rows of pixels or of coverage.
template <class Pixel> struct Raster {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<Pixel> pixels;

    Raster(std::size_t width, std::size_t height)
        : width(width)
        , height(height)
        , pixels(width * height)
    {
    }
    std::span<Pixel> row(std::size_t y) { return std::span(pixels).subspan(y * width, width); }
    /// The pixel of a raster of another size that shows the same area, at (x, y).
    const Pixel& at(std::size_t x, std::size_t y, std::size_t ofWidth, std::size_t ofHeight) const
    {
        return pixels[y * height / ofHeight * width + x * width / ofWidth];
    }
};

using PixelRaster = Raster<PixelBytes>;
using CoverageRaster = Raster<std::uint8_t>;

/// Converts samples to opaque pixels.
class SampleConverter {
public:
    SampleConverter(const PDFSamples& samples, const PDFColorSpace& space, const PDFObject& dictionary)
        : _samples(samples)
        , _space(space)
        , _decode(decodeOf(dictionary, space.defaultDecode(samples.bits)))
    {
        if (samples.components != 1 || samples.bits > 8)
            return;
        for (std::uint32_t sample = 0; sample <= samples.largest(); ++sample)
            _table.push_back(convert(std::array{std::uint16_t(sample)}));
    }

    /// The cost of all conversions, in the units of a budget.
    double work() const
    {
        const double conversions = _table.empty() ? double(_samples.width) * double(_samples.height) : 256;
        return conversions * _space.work();
    }

    void convertRow(std::span<const std::uint16_t> samples, std::span<PixelBytes> pixels)
    {
        const std::size_t count = _samples.components;
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            const auto ofPixel = samples.subspan(x * count, count);
            // Neighbours are often the same.
            if (!_table.empty())
                pixels[x] = _table[ofPixel[0]];
            else if (x > 0 && std::ranges::equal(ofPixel, samples.subspan((x - 1) * count, count)))
                pixels[x] = pixels[x - 1];
            else
                pixels[x] = convert(ofPixel);
        }
    }

private:
    PixelBytes convert(std::span<const std::uint16_t> samples) const
    {
        const PDFInterval encoded{0, double(_samples.largest())};
        std::array<double, PDFColorSpace::kMaxComponents> components;
        for (std::size_t i = 0; i < samples.size(); ++i)
            components[i] = encoded.map(samples[i], _decode[i]);
        return opaquePixel(_space.color(std::span(components).first(samples.size())));
    }

    const PDFSamples& _samples;
    const PDFColorSpace& _space;
    const std::vector<PDFInterval> _decode;
    std::vector<PixelBytes> _table; ///< by sample, where that is small
};

/// Makes transparent the pixels all of whose samples lie in the intervals of a colour key.
void applyColorKey(const PDFObject& key, std::span<const std::uint16_t> samples, std::size_t components,
    std::span<PixelBytes> pixels)
{
    const std::vector<double> limits = key.numbers(2 * components);
    for (std::size_t x = 0; x < pixels.size(); ++x) {
        bool isKeyed = true;
        for (std::size_t i = 0; i < components && isKeyed; ++i) {
            const std::uint16_t sample = samples[x * components + i];
            isKeyed = sample >= limits[2 * i] && sample <= limits[2 * i + 1];
        }
        if (isKeyed)
            pixels[x] = {};
    }
}

/// The coverage of a mask's samples, full at the decoded value 1.
CoverageRaster coverageOf(const PDFSamples& samples, const PDFInterval& decode)
{
    CoverageRaster coverage(samples.width, samples.height);
    const PDFInterval encoded{0, double(samples.largest())};
    const PDFInterval unit{0, 1};
    std::vector<std::uint16_t> row(samples.width * samples.components);
    for (std::size_t y = 0; y < samples.height; ++y) {
        samples.readRow(y, row);
        const auto pixels = coverage.row(y);
        for (std::size_t x = 0; x < pixels.size(); ++x)
            pixels[x] =
                std::uint8_t(std::lround(unit.clamp(encoded.map(row[x * samples.components], decode)) * 255));
    }
    return coverage;
}

/// The coverage that an image's mask or soft mask gives it. Nothing without one, and where it cannot be
/// decoded.
std::optional<CoverageRaster> maskOf(const PDFObject& dictionary, PDFRecording& recording)
{
    const PDFObject softMask = dictionary["SMask"];
    const bool isSoft = softMask.isStream();
    const PDFObject mask = isSoft ? softMask : dictionary["Mask"];
    if (!mask.isStream())
        return std::nullopt;
    const int bits = isSoft ? mask["BitsPerComponent"].integer() : 1;
    const auto samples = decodePDFSamples(dataOf(mask, recording), 1, bits, recording);
    if (!samples)
        return std::nullopt;
    PDFInterval decode = decodeOf(mask, {{0, 1}}).front();
    if (!isSoft)
        decode = {1 - decode.low, 1 - decode.high}; // of a stencil, 0 is painted
    return coverageOf(*samples, decode);
}

/// Premultiplies by a mask, in the larger width and the larger height of the two. `matte` is the colour with
/// which the pixels were blended by the mask already; it counts for masks of the same size.
PixelRaster maskedPixels(const PixelRaster& pixels, const CoverageRaster& mask,
    std::optional<PixelBytes> matte, PDFRecording& recording)
{
    const std::size_t width = std::max(pixels.width, mask.width);
    const std::size_t height = std::max(pixels.height, mask.height);
    const bool hasSameSize = pixels.width == mask.width && pixels.height == mask.height;
    recording.budget().spendImagePixels(width * height);
    PixelRaster result(width, height);
    for (std::size_t y = 0; y < height; ++y) {
        const auto row = result.row(y);
        for (std::size_t x = 0; x < width; ++x) {
            const PixelBytes& color = pixels.at(x, y, width, height);
            const int alpha = mask.at(x, y, width, height);
            row[x][3] = std::uint8_t(alpha);
            for (std::size_t i = 0; i < 3; ++i) {
                // With a matte m: c is m + a (c' - m), of which a c' is wanted.
                const int value = matte && hasSameSize ? 255 * (color[i] - (*matte)[i]) + alpha * (*matte)[i]
                                                       : alpha * color[i];
                row[x][i] = std::uint8_t(std::clamp((value + 127) / 255, 0, alpha));
            }
        }
    }
    return result;
}

/// An image that owns the pixels.
template <class Pixel> RetainPtr<CGImage> makeImage(Raster<Pixel> raster, auto create)
{
    auto* const owned = new std::vector<Pixel>(std::move(raster.pixels));
    const auto release = [](void* info, const void*, std::size_t) {
        delete static_cast<std::vector<Pixel>*>(info);
    };
    const auto bytes =
        adopt(CGDataProviderCreateWithData(owned, owned->data(), owned->size() * sizeof(Pixel), release));
    return adopt(create(raster.width, raster.height, bytes.get()));
}

RetainPtr<CGImage> makePicture(PixelRaster pixels, bool isOpaque)
{
    return makeImage(std::move(pixels), [=](std::size_t width, std::size_t height, CGDataProviderRef bytes) {
        const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
        return CGImageCreate(width, height, 8, 32, 4 * width, rgb,
            isOpaque ? kCGImageAlphaNoneSkipLast : kCGImageAlphaPremultipliedLast, bytes, nullptr, true,
            kCGRenderingIntentDefault);
    });
}

/// The space of an image's samples; null when it does not fit them.
std::shared_ptr<const PDFColorSpace> spaceOf(
    const PDFObject& dictionary, const PDFObject& resources, PDFRecording& recording)
{
    auto space = PDFColorSpace::make(dictionary["ColorSpace"], resources, recording);
    return space && !space->isPattern() ? space : nullptr;
}

std::shared_ptr<const PDFColorSpace> deviceSpace(std::size_t components)
{
    return components == 1 ? PDFColorSpace::deviceGray()
        : components == 3  ? PDFColorSpace::deviceRGB()
                           : PDFColorSpace::deviceCMYK();
}

RetainPtr<CGImage> makeColorImage(
    const PDFImageData& data, const PDFObject& resources, PDFRecording& recording)
{
    auto space = spaceOf(data.dictionary, resources, recording);
    const bool isJPEG = data.pictureFilter == "DCTDecode";
    if (!space && !isJPEG && data.pictureFilter.empty()) {
        recording.notDrawn("an image is not drawn (invalid colour space)");
        return nullptr;
    }
    const auto samples = decodePDFSamples(
        data, space ? space->components() : 0, data.dictionary["BitsPerComponent"].integer(), recording);
    if (!samples)
        return nullptr;
    if (!space || space->components() != samples->components)
        space = deviceSpace(samples->components);

    SampleConverter converter(*samples, *space, data.dictionary);
    recording.budget().spendWork(converter.work());
    const PDFObject key = data.dictionary["Mask"];
    const bool hasColorKey = key.size() >= 2 * samples->components && !data.dictionary["SMask"].isStream();
    PixelRaster pixels(samples->width, samples->height);
    std::vector<std::uint16_t> row(samples->width * samples->components);
    for (std::size_t y = 0; y < samples->height; ++y) {
        samples->readRow(y, row);
        converter.convertRow(row, pixels.row(y));
        if (hasColorKey)
            applyColorKey(key, row, samples->components, pixels.row(y));
    }
    const auto mask = maskOf(data.dictionary, recording);
    if (!mask)
        return makePicture(std::move(pixels), !hasColorKey);
    std::optional<PixelBytes> matte;
    if (const PDFObject components = data.dictionary["SMask"]["Matte"];
        components.size() >= space->components())
        matte = opaquePixel(space->color(components.numbers()));
    return makePicture(maskedPixels(pixels, *mask, matte, recording), false);
}

RetainPtr<CGImage> makeStencil(const PDFImageData& data, PDFRecording& recording)
{
    const auto samples = decodePDFSamples(data, 1, 1, recording);
    if (!samples)
        return nullptr;
    // An image mask, too, paints where it is 0.
    return makeImage(coverageOf(*samples, decodeOf(data.dictionary, {{0, 1}}).front()),
        [](std::size_t width, std::size_t height, CGDataProviderRef bytes) {
            return CGImageMaskCreate(width, height, 8, 8, width, bytes, nullptr, true);
        });
}

} // namespace

std::shared_ptr<const PDFImage> makePDFImage(
    const PDFImageData& data, const PDFObject& resources, PDFRecording& recording)
{
    PDFImage image;
    image.isStencil = data.dictionary["ImageMask"].boolean();
    image.interpolates = data.dictionary["Interpolate"].boolean();
    image.image = image.isStencil ? makeStencil(data, recording) : makeColorImage(data, resources, recording);
    return image.image ? std::make_shared<PDFImage>(std::move(image)) : nullptr;
}

std::shared_ptr<const PDFImage> makePDFImage(
    const PDFObject& stream, const PDFObject& resources, PDFRecording& recording)
{
    return recording.cached<PDFImage>(
        stream, [&] { return makePDFImage(dataOf(stream, recording), resources, recording); });
}
