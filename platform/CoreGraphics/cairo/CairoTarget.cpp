#include "CoreGraphics/cairo/CairoTarget.h"

#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/cairo/CairoSurface.h"

#include <climits>
#include <cstring>

CairoTarget::CairoTarget(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, cairo_format_t format)
    : _memory(memory)
    , _area(area)
    , _space(space)
    , _format(format)
{
}

CairoTarget::~CairoTarget()
{
    // References that cairo may still hold to the surface must not access the memory after this.
    if (_surface)
        cairo_surface_finish(_surface.get());
}

bool CairoTarget::needsCopy() const
{
    return reinterpret_cast<std::uintptr_t>(_memory.data) % 4 != 0 || _memory.bytesPerRow % 4 != 0
        || _memory.bytesPerRow > INT_MAX;
}

void CairoTarget::prepare()
{
    if (_cairo)
        return;
    unsigned char* data = _memory.data;
    int bytesPerRow = int(_memory.bytesPerRow);
    if (needsCopy()) {
        bytesPerRow = cairo_format_stride_for_width(_format, _area.width());
        _copy = std::make_unique<unsigned char[]>(std::size_t(bytesPerRow) * std::size_t(_area.height()));
        data = _copy.get();
    }
    _surface.reset(
        cairo_image_surface_create_for_data(data, _format, _area.width(), _area.height(), bytesPerRow));
    _cairo = makeBaseSpaceCairo(_surface.get(), _area, _space);
    _clip = _area;
}

void CairoTarget::setClip(const PixelRect& clip)
{
    if (clip == _clip)
        return;
    _clip = clip;
    cairo_reset_clip(_cairo.get());
    if (clip == _area)
        return;
    cairo_new_path(_cairo.get());
    const CGRect base = _space.baseRect(clip);
    cairo_rectangle(_cairo.get(), base.origin.x, base.origin.y, base.size.width, base.size.height);
    cairo_clip(_cairo.get());
}

void CairoTarget::copyRows(const PixelRect& touched, bool intoCopy)
{
    const auto copyBytesPerRow = std::size_t(cairo_image_surface_get_stride(_surface.get()));
    const std::size_t offset = std::size_t(touched.left - _area.left) * _memory.bytesPerPixel();
    const std::size_t size = std::size_t(touched.width()) * _memory.bytesPerPixel();
    for (int y = touched.top; y < touched.bottom; ++y) {
        unsigned char* row = pixel(touched.left, y);
        unsigned char* copy = _copy.get() + std::size_t(y - _area.top) * copyBytesPerRow + offset;
        if (intoCopy)
            std::memcpy(copy, row, size);
        else
            std::memcpy(row, copy, size);
    }
}

CairoTarget::Drawing::Drawing(CairoTarget& target, const PixelRect& touched, const PixelRect& clip)
    : _target(target)
    , _touched(touched)
{
    target.prepare();
    if (target._copy)
        target.copyRows(touched, true);
    // cairo remembers that a surface is cleared, and would ignore pixels that others wrote afterwards.
    cairo_surface_mark_dirty(target._surface.get());
    target.setClip(clip);
}

CairoTarget::Drawing::~Drawing()
{
    cairo_surface_flush(_target._surface.get());
    if (_target._copy)
        _target.copyRows(_touched, false);
    if (cairo_status(_target._cairo.get()) == CAIRO_STATUS_SUCCESS)
        return;
    // A failed cairo_t remains in its error state, so the next operation gets a new one.
    CGLogMisuse("CGContext", cairo_status_to_string(cairo_status(_target._cairo.get())));
    _target._cairo.reset();
    _target._surface.reset();
}
