#pragma once

#include "CoreText/Typeface.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// A range of a string in one typeface.
struct TextSpan {
    NSUInteger end = 0; ///< the index after its last code unit
    const Typeface* typeface = nullptr;
    /// Whether letters may join in ligatures; false for spaced text.
    bool hasLigatures = true;
};

/// A glyph and its position in a run. Lengths in ems.
struct ShapedGlyph {
    std::uint32_t id = 0;
    bool isInked = true;      ///< false for blanks
    bool endsCluster = false; ///< a letter with all its marks, the unit that kerning spaces
    double advance = 0;
    double x = 0; ///< offset from the pen, which the advances move
    double y = 0;
};

/// Glyphs in one face, left to right.
struct ShapedRun {
    std::shared_ptr<const FontFace> face;
    std::size_t span = 0; ///< index of the span of its text
    std::size_t firstGlyph = 0;
    std::size_t glyphCount = 0;
    std::size_t clusterCount = 0;
    double advance = 0; ///< the sum
};

/// A line of text as glyphs, for all sizes: unhinted text has the same shape at each. Immutable; any thread.
struct ShapedText {
    std::uint64_t serial = 0;    ///< unique
    std::vector<ShapedRun> runs; ///< left to right
    std::vector<ShapedGlyph> glyphs;

    std::span<const ShapedGlyph> glyphsOf(const ShapedRun& run) const
    {
        return std::span(glyphs).subspan(run.firstGlyph, run.glyphCount);
    }
};
