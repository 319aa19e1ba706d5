#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/context/CGContextInternal.h"
#include "CoreGraphics/context/CGContextText.h"
#include "CoreGraphics/raster/RecentlyUsed.h"

#include <cmath>
#include <mutex>

namespace {

/// Pixels. Larger images take more than 16 KB, and are few.
constexpr double kLongestSide = 64;

/// 256 of the largest ones.
constexpr std::size_t kCapacity = std::size_t(4) << 20;

/// The image of a glyph at a size in pixels.
struct ScaledGlyph {
    std::uint64_t face = 0;
    std::uint32_t glyph = 0;
    int width = 0;
    int height = 0;

    bool operator==(const ScaledGlyph&) const = default;
};

struct ScaledGlyphHash {
    std::size_t operator()(const ScaledGlyph& key) const
    {
        return ((key.face * 31 + key.glyph) * 127 + std::size_t(key.width)) * 127 + std::size_t(key.height);
    }
};

/// Caches scaled images of glyphs. Any thread.
class ScaledGlyphCache {
public:
    static ScaledGlyphCache& shared()
    {
        // Never destroyed: views may draw until the program ends.
        static auto* const cache = new ScaledGlyphCache();
        return *cache;
    }

    RetainPtr<CGImage> image(const GlyphOutlines& face, const ScaledGlyph& key)
    {
        const std::scoped_lock lock(_mutex);
        if (const auto* image = _images.find(key))
            return *image;
        auto image = scaled(face.image(key.glyph).get(), key.width, key.height);
        _images.insert(key, image, sizeof(CGImage) + std::size_t(key.width) * std::size_t(key.height) * 4);
        _images.evict();
        return image;
    }

private:
    static RetainPtr<CGImage> scaled(CGImageRef image, int width, int height)
    {
        const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
        const auto context = adopt(CGBitmapContextCreate(
            nullptr, std::size_t(width), std::size_t(height), 8, 0, space, kCGImageAlphaPremultipliedLast));
        CGContextDrawImage(context, CGRectMake(0, 0, width, height), image);
        return adopt(CGBitmapContextCreateImage(context));
    }

    std::mutex _mutex;
    RecentlyUsed<ScaledGlyph, RetainPtr<CGImage>, ScaledGlyphHash> _images{kCapacity};
};

} // namespace

void CGContextDrawGlyphImage(
    CGContextRef context, const GlyphOutlines& face, std::uint32_t glyph, CGRect rect)
{
    CGContextSaveGState(context);
    GraphicsState& state = context->state();
    const CGAffineTransform baseFromText = CGAffineTransformConcat(context->textMatrix, state.baseFromUser);
    const CGRect pixels = CGRectApplyAffineTransform(rect, baseFromText);
    const bool isUpright =
        baseFromText.b == 0 && baseFromText.c == 0 && baseFromText.a > 0 && baseFromText.d > 0;
    if (state.quantizesGlyphs() && isUpright && state.interpolation != kCGInterpolationNone
        && std::max(pixels.size.width, pixels.size.height) <= kLongestSide) {
        const double width = std::max(std::round(pixels.size.width), 1.0);
        const double height = std::max(std::round(pixels.size.height), 1.0);
        const auto image =
            ScaledGlyphCache::shared().image(face, {face.serial(), glyph, int(width), int(height)});
        state.baseFromUser = CGAffineTransformIdentity;
        CGContextDrawImage(context,
            CGRectMake(std::round(pixels.origin.x), std::round(pixels.origin.y), width, height), image);
    } else {
        state.baseFromUser = baseFromText;
        CGContextDrawImage(context, rect, face.image(glyph).get());
    }
    CGContextRestoreGState(context);
}
