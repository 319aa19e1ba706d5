#pragma once

#include "CoreText/Typeface.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// A part of a text in one typeface.
struct TextSpan {
    NSUInteger end = 0; ///< the index behind its last code unit
    const Typeface* typeface = nullptr;
    /// Whether letters may be drawn as one glyph where the face has one. Not when they are spaced.
    bool hasLigatures = true;
};

/// A glyph's place in its run. Lengths in ems.
struct ShapedGlyph {
    std::uint32_t id = 0;
    bool isInked = true;      ///< false for what leaves room only
    bool endsCluster = false; ///< what is spaced: a letter with all its marks
    double advance = 0;
    double x = 0; ///< from the pen, which stands where the advances lead
    double y = 0;
};

/// Glyphs in one face, left to right.
struct ShapedRun {
    std::shared_ptr<const FontFace> face;
    std::size_t span = 0; ///< whose text this is
    std::size_t firstGlyph = 0;
    std::size_t glyphCount = 0;
    std::size_t clusterCount = 0;
    double advance = 0; ///< the sum
};

/// A line of text as glyphs, for all sizes: unhinted text is alike at each. Immutable; any thread.
struct ShapedText {
    std::uint64_t serial = 0;    ///< no other has it
    std::vector<ShapedRun> runs; ///< left to right
    std::vector<ShapedGlyph> glyphs;

    std::span<const ShapedGlyph> glyphsOf(const ShapedRun& run) const
    {
        return std::span(glyphs).subspan(run.firstGlyph, run.glyphCount);
    }
};
