// Four cards with noise, each from a dark colour to a bright one: finer on the right, with more octaves
// below.

#include "Page.h"

#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRNoise.h>

#include <string>
#include <utility>
#include <vector>

namespace {

/// Samples per point, for sharp noise at scale 2 too.
constexpr int kSamplesPerPoint = 2;

/// The noise of one card.
struct Noise {
    int cells; ///< of the first octave's lattice, from side to side
    int octaves;
    const char* color;
};

constexpr Noise kNoises[] = {
    {3, 1, "zel-blue-highlight"},
    {8, 1, "zel-green-highlight"},
    {3, 6, "zel-orange-highlight"},
    {8, 6, "zel-menu-fg-lit"},
};

/// The noise as an opaque image of that size in points, from the dark colour at 0 to the bright one at 1.
RetainPtr<CGImage> makeImage(const Noise& noise, NSSize size)
{
    const auto width = static_cast<std::size_t>(size.width) * kSamplesPerPoint;
    const auto height = static_cast<std::size_t>(size.height) * kSamplesPerPoint;
    std::vector<float> samples(width * height);
    const float step = static_cast<float>(noise.cells) / static_cast<float>(width);
    ZRFillPerlinNoise(samples.data(), width, height, width, 0, 0, step, 1, noise.octaves);

    const CGFloat* const dark = CGColorGetComponents(paletteColor("zel-button-bg"));
    const CGFloat* const light = CGColorGetComponents(paletteColor(noise.color));
    constexpr std::size_t bytesPerPixel = 4;
    std::vector<unsigned char> pixels;
    pixels.reserve(samples.size() * bytesPerPixel);
    for (const float sample : samples) {
        for (int i = 0; i < 3; ++i)
            pixels.push_back(static_cast<unsigned char>(
                255 * (dark[i] + static_cast<CGFloat>(sample) * (light[i] - dark[i]))));
        pixels.push_back(255);
    }
    const auto provider =
        adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(pixels.data(), pixels.size()).get()));
    return adopt(CGImageCreate(width, height, 8, 8 * bytesPerPixel, width * bytesPerPixel,
        ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaNoneSkipLast, provider, nullptr, true,
        kCGRenderingIntentDefault));
}

/// A card with noise, and a caption that says which.
class NoiseView : public NSView {
public:
    explicit NoiseView(const Noise& noise)
        : _noise(noise)
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        const std::string octaves = std::to_string(_noise.octaves);
        drawCaption(context, bounds(),
            NSString(std::to_string(_noise.cells) + " cells across, " + octaves
                + (_noise.octaves == 1 ? " octave" : " octaves")));

        const NSRect rect = aboveCaption(bounds());
        if (NSIsEmptyRect(rect))
            return;
        if (!_image || !NSEqualSizes(_imageSize, rect.size)) {
            _image = makeImage(_noise, rect.size);
            _imageSize = rect.size;
        }
        clipToGalleryCard(context, bounds());
        CGContextDrawImage(context, rect, _image);
    }

protected:
    ~NoiseView() override = default;

private:
    const Noise _noise;
    RetainPtr<CGImage> _image; ///< for `_imageSize`
    NSSize _imageSize{};
};

RetainPtr<NSView> makeNoisePage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> cards;
    for (const Noise& noise : kNoises)
        cards.emplace_back(make<NoiseView>(noise));
    return makeGalleryPage(std::move(cards), galleryGrid(2, std::size(kNoises)));
}

const GalleryPage noisePage{"noise", 40, "Noise",
    "Perlin noise between two colours: finer on the right, with more octaves below.", makeNoisePage};

} // namespace
