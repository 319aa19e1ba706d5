#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <cairo.h>
#include <memory>

/// The pixels of a bitmap context as a drawing destination of cairo.
///
/// cairo requires memory and rows that are aligned to 4 bytes. For others it draws into an aligned copy; the
/// rows that it touches are copied in before and out afterwards.
class CairoTarget {
public:
    /// `memory` holds the pixels of `area`.
    CairoTarget(
        const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, cairo_format_t format);
    CairoTarget(const CairoTarget&) = delete;
    CairoTarget& operator=(const CairoTarget&) = delete;
    ~CairoTarget();

    unsigned char* pixel(int x, int y) const { return _memory.pixel(x - _area.left, y - _area.top); }

    /// One drawing operation. During its lifetime cairo may draw within `touched`; before and after it the
    /// pixels in memory are valid, and the caller may change them.
    class Drawing {
    public:
        /// Sets `clip` as cairo's clip.
        Drawing(CairoTarget& target, const PixelRect& touched, const PixelRect& clip);
        Drawing(const Drawing&) = delete;
        Drawing& operator=(const Drawing&) = delete;
        ~Drawing();

        /// Draws in base space.
        cairo_t* cairo() const { return _target._cairo.get(); }

    private:
        CairoTarget& _target;
        PixelRect _touched;
    };

private:
    bool needsCopy() const;
    void prepare();
    void setClip(const PixelRect& clip);
    void copyRows(const PixelRect& touched, bool intoCopy);

    PixelMemory _memory;
    PixelRect _area;
    PixelSpace _space;
    cairo_format_t _format;
    std::unique_ptr<unsigned char[]> _copy; ///< null where cairo draws into the memory itself
    CairoPtr<cairo_surface_t> _surface;     ///< made when first needed
    CairoPtr<cairo_t> _cairo;
    PixelRect _clip; ///< the current clip of `_cairo`
};
