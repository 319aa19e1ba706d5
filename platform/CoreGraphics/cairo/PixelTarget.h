#pragma once

#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/SolidRows.h"

#include <memory>

/// The pixels of a bitmap context, and the way for cairo to draw into them.
///
/// cairo takes only memory and rows that are aligned to 4 bytes. Where they are not, it draws into aligned
/// pixels of its own, and the rows that it touches are copied in before and out after.
class PixelTarget {
public:
    PixelTarget(const PixelMemory& memory, int width, int height, cairo_format_t format);
    PixelTarget(const PixelTarget&) = delete;
    PixelTarget& operator=(const PixelTarget&) = delete;
    ~PixelTarget();

    const PixelMemory& memory() const { return _memory; }
    PixelRect bounds() const { return {0, 0, _width, _height}; }
    int height() const { return _height; }
    cairo_format_t format() const { return _format; }
    std::size_t bytesPerPixel() const { return _memory.isAlphaOnly ? 1 : 4; }

    /// One drawing operation. While it lives, cairo may draw within `touched`; before and after it the pixels
    /// in memory are what counts, and anybody may change them.
    class Drawing {
    public:
        /// `clip` is set as cairo's clip.
        Drawing(PixelTarget& target, const PixelRect& touched, const PixelRect& clip);
        Drawing(const Drawing&) = delete;
        Drawing& operator=(const Drawing&) = delete;
        ~Drawing();

        /// Draws in base space.
        cairo_t* cairo() const { return _target._cairo.get(); }

    private:
        PixelTarget& _target;
        PixelRect _touched;
    };

private:
    bool needsShadow() const;
    void prepare();
    void setClip(const PixelRect& clip);
    void copyRows(const PixelRect& touched, bool intoShadow);

    PixelMemory _memory;
    int _width;
    int _height;
    cairo_format_t _format;
    std::unique_ptr<unsigned char[]> _shadow; ///< null where cairo draws into the memory itself
    CairoPtr<cairo_surface_t> _surface;       ///< made when first needed
    CairoPtr<cairo_t> _cairo;
    PixelRect _clip; ///< in force in `_cairo`
};
