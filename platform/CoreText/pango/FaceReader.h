#pragma once

#include "CoreText/FontFace.h"

#include <hb-ot.h>

/// Releases HarfBuzz's objects.
struct HarfBuzzDeleter {
    void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
    void operator()(hb_font_t* font) const { hb_font_destroy(font); }
};
template <class T> using HarfBuzzPtr = std::unique_ptr<T, HarfBuzzDeleter>;

/// Reads glyphs from a font file. Any thread.
class FontFace::Reader {
public:
    /// The face and variation of `font`, unhinted and in design units.
    explicit Reader(hb_font_t* font);

    /// False for a face without glyphs, which is what HarfBuzz makes of a missing or damaged file.
    static bool canRead(hb_font_t* font) { return hb_face_get_glyph_count(hb_font_get_face(font)) > 0; }

    FaceMetrics metrics() const;
    std::uint32_t glyph(char32_t character) const;
    double advance(std::uint32_t glyph) const { return em(hb_font_get_glyph_h_advance(_font.get(), glyph)); }
    bool hasColors() const { return _hasImages || _hasLayers; }
    GlyphPicture picture(std::uint32_t glyph) const;
    RetainPtr<CGImage> image(std::uint32_t glyph) const;

private:
    RetainPtr<const CGPath> outline(std::uint32_t glyph) const;
    std::vector<GlyphPicture::Layer> layers(std::uint32_t glyph) const;
    double em(int units) const { return units / _unitsPerEm; }

    HarfBuzzPtr<hb_font_t> _font;
    double _unitsPerEm;
    bool _hasImages;
    bool _hasLayers;
};
