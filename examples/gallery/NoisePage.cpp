// Four squares of noise, each from a dark colour to a bright one: finer on the right, with more octaves
// below.

#include "Page.h"

#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRNoise.h>

#include <string>
#include <vector>

namespace {

constexpr CGFloat kGap = 16;
constexpr CGFloat kSquare = (kGalleryCardSide - kGap) / 2;
/// Samples per point, for sharp noise at scale 2 too.
constexpr int kScale = 2;

/// The noise of one square.
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

/// The noise as an opaque image, from the dark colour at 0 to the bright one at 1.
RetainPtr<CGImage> makeImage(const Noise& noise)
{
    constexpr auto side = static_cast<std::size_t>(kSquare) * kScale;
    std::vector<float> samples(side * side);
    ZRFillPerlinNoise(
        samples.data(), side, side, side, 0, 0, static_cast<float>(noise.cells) / side, 1, noise.octaves);

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
    return adopt(CGImageCreate(side, side, 8, 8 * bytesPerPixel, side * bytesPerPixel,
        ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaNoneSkipLast, provider, nullptr, true,
        kCGRenderingIntentDefault));
}

/// A square of noise with round corners.
class NoiseView : public NSView {
public:
    NoiseView(NSRect frame, const Noise& noise)
        : NSView(frame)
        , _image(makeImage(noise))
    {
        setToolTip(NSString(std::to_string(noise.octaves) + (noise.octaves == 1 ? " octave" : " octaves")
            + ", the first in " + std::to_string(noise.cells) + " × " + std::to_string(noise.cells)
            + " cells"));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        clipToGalleryCard(context, bounds());
        CGContextDrawImage(context, bounds(), _image);
    }

protected:
    ~NoiseView() override = default;

private:
    RetainPtr<CGImage> _image;
};

RetainPtr<NSView> makeNoisePage(const GalleryOptions&)
{
    auto page = makeGalleryPage();
    constexpr CGFloat kStride = kSquare + kGap;
    constexpr NSPoint kOrigins[] = {{0, kStride}, {kStride, kStride}, {0, 0}, {kStride, 0}};
    for (std::size_t i = 0; i < std::size(kNoises); ++i) {
        const NSRect frame =
            NSMakeRect(kGalleryMargin + kOrigins[i].x, kGalleryMargin + kOrigins[i].y, kSquare, kSquare);
        page->addSubview(make<NoiseView>(frame, kNoises[i]));
    }
    return page;
}

const GalleryPage page{"noise", 40, "Noise",
    "Perlin noise between two colours: finer on the right, with more octaves below.", makeNoisePage};

} // namespace
