#pragma once

#include "CoreGraphics/CGColorInternal.h"

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

/// What a glyph looks like. Lengths in ems, y upward, from the glyph's origin.
struct GlyphPicture {
    struct Layer {
        RetainPtr<const CGPath> outline;
        std::optional<CGColorRGBA> color; ///< none: that of the text
    };

    RetainPtr<const CGPath>
        outline;               ///< to be filled in the text's colour; null when there is nothing to fill
    std::vector<Layer> layers; ///< in place of the outline, painted one over the other
    bool isImage = false;      ///< in place of both: FontFace::image, which fills `ink`
    CGRect ink = CGRectZero;   ///< what is inked; empty at the origin when nothing is
};

/// A face of a font: what its glyphs look like, unhinted. Any thread.
class FontFace {
public:
    /// The library's side: reads the file.
    class Reader;

    explicit FontFace(std::unique_ptr<Reader> reader);
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    ~FontFace();

    const FaceMetrics& metrics() const { return _metrics; }
    /// How far a glyph moves the pen, in ems.
    double advance(std::uint32_t glyph) const;
    /// Whether glyphs may have colours of their own.
    bool hasColors() const;
    /// Lent as long as the face.
    const GlyphPicture& picture(std::uint32_t glyph) const;
    /// The picture of a glyph that is an image; null when its bytes are damaged. The last ones are kept.
    RetainPtr<CGImage> image(std::uint32_t glyph) const;

private:
    struct Glyphs;

    std::unique_ptr<Reader> _reader;
    std::unique_ptr<Glyphs> _glyphs;
    FaceMetrics _metrics;
};
