#pragma once

#include "CoreText/ShapedText.h"

#include <CoreText/CTLine.h>

/// The object behind CTLineRef: the glyphs of a text, and the attributes that its parts are drawn with.
class KORVID_EXPORT CTLine final : public NSObject { // exported for the tests
public:
    /// The attributes of one run of text.
    struct Style {
        double size = 0; ///< points per em
        double kern = 0; ///< points after each cluster
        RetainPtr<NSObject> colorObject;
        const CTColorValue* color = nullptr; ///< that object; null for black
    };

    CTLine(std::shared_ptr<const ShapedText> shaped, std::vector<Style> styles);

    const ShapedText& shaped() const { return *_shaped; }
    const Style& styleOf(const ShapedRun& run) const { return _styles[run.span]; }
    /// In points.
    double advanceOf(const ShapedRun& run) const
    {
        const Style& style = styleOf(run);
        return run.advance * style.size + double(run.clusterCount) * style.kern;
    }

    /// Calls `place(glyph, textFromEm)` for each glyph of a run that may leave ink, where the run starts at
    /// `x` points: the transform takes the glyph's picture to its position in the line.
    template <class Place> void placeGlyphs(const ShapedRun& run, double x, Place place) const
    {
        const Style& style = styleOf(run);
        for (const ShapedGlyph& glyph : _shaped->glyphsOf(run)) {
            if (glyph.isInked)
                place(glyph,
                    CGAffineTransform{
                        style.size, 0, 0, style.size, x + glyph.x * style.size, glyph.y * style.size});
            x += glyph.advance * style.size + (glyph.endsCluster ? style.kern : 0);
        }
    }

private:
    ~CTLine() override;

    std::shared_ptr<const ShapedText> _shaped;
    std::vector<Style> _styles;
};

/// A line of a part of a string, which must not reach beyond its end.
RetainPtr<const CTLine> makeLine(const NSAttributedString& string, NSRange range);
