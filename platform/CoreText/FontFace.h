#pragma once

#include "CoreGraphics/context/CGContextText.h"

#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// Heights of a face's lines, in ems.
struct FaceMetrics {
    double ascent = 0;
    double descent = 0; ///< downward
    double leading = 0;
};

/// The appearance of a glyph. Lengths in ems, y upward, from the glyph's origin.
struct GlyphPicture {
    struct Layer {
        RetainPtr<const CGPath> outline;
        std::optional<CGColorRGBA> color; ///< none: the text's colour
    };

    RetainPtr<const CGPath> outline; ///< filled in the text's colour; null for a glyph without one
    std::vector<Layer> layers;       ///< instead of the outline, painted in order
    bool isImage = false;            ///< instead of both: FontFace::image, scaled to `ink`
    CGRect ink = CGRectZero;         ///< bounds of the ink; empty at the origin for a blank
};

/// A face of a font: the unhinted pictures and advances of its glyphs. Any thread.
class FontFace final : public GlyphOutlines {
public:
    /// Reads the font file.
    class Reader;

    explicit FontFace(std::unique_ptr<Reader> reader);
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    ~FontFace();

    const FaceMetrics& metrics() const { return _metrics; }
    /// The glyph of a character, without any shaping; 0 when the face does not have it.
    std::uint32_t glyph(char32_t character) const;
    /// The advance of a glyph, in ems.
    double advance(std::uint32_t glyph) const;
    /// Whether glyphs may have colours of their own.
    bool hasColors() const;
    /// Cached; borrowed from the face, which must outlive the reference.
    const GlyphPicture& picture(std::uint32_t glyph) const;
    const CGPath* outline(std::uint32_t glyph) const override { return picture(glyph).outline.get(); }
    /// The image of a glyph whose picture is one; null when its bytes are damaged. Recent ones are cached.
    RetainPtr<CGImage> image(std::uint32_t glyph) const override;

private:
    struct Glyphs;

    std::unique_ptr<Reader> _reader;
    std::unique_ptr<Glyphs> _glyphs;
    FaceMetrics _metrics;
};
