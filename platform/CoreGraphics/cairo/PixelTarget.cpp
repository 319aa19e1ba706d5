#include "CoreGraphics/cairo/PixelTarget.h"

#include "CoreGraphics/CGLog.h"

#include <climits>
#include <cstring>

PixelTarget::PixelTarget(const PixelMemory& memory, int width, int height, cairo_format_t format)
    : _memory(memory)
    , _width(width)
    , _height(height)
    , _format(format)
{
}

PixelTarget::~PixelTarget()
{
    // Whoever might still hold the surface no longer reaches the memory.
    if (_surface)
        cairo_surface_finish(_surface.get());
}

bool PixelTarget::needsShadow() const
{
    return reinterpret_cast<std::uintptr_t>(_memory.data) % 4 != 0 || _memory.bytesPerRow % 4 != 0
        || _memory.bytesPerRow > INT_MAX;
}

void PixelTarget::prepare()
{
    if (_cairo)
        return;
    unsigned char* data = _memory.data;
    int bytesPerRow = int(_memory.bytesPerRow);
    if (needsShadow()) {
        bytesPerRow = cairo_format_stride_for_width(_format, _width);
        _shadow = std::make_unique<unsigned char[]>(std::size_t(bytesPerRow) * std::size_t(_height));
        data = _shadow.get();
    }
    _surface.reset(cairo_image_surface_create_for_data(data, _format, _width, _height, bytesPerRow));
    _cairo = makeBaseSpaceCairo(_surface.get(), bounds(), _height);
    _clip = bounds();
}

void PixelTarget::setClip(const PixelRect& clip)
{
    if (clip == _clip)
        return;
    _clip = clip;
    cairo_reset_clip(_cairo.get());
    if (clip == bounds())
        return;
    cairo_new_path(_cairo.get());
    cairo_rectangle(_cairo.get(), clip.left, _height - clip.bottom, clip.width(), clip.height());
    cairo_clip(_cairo.get());
}

void PixelTarget::copyRows(const PixelRect& touched, bool intoShadow)
{
    const auto shadowBytesPerRow = std::size_t(cairo_image_surface_get_stride(_surface.get()));
    const std::size_t offset = std::size_t(touched.left) * bytesPerPixel();
    const std::size_t size = std::size_t(touched.width()) * bytesPerPixel();
    for (auto y = std::size_t(touched.top); y < std::size_t(touched.bottom); ++y) {
        unsigned char* row = _memory.data + y * _memory.bytesPerRow + offset;
        unsigned char* shadow = _shadow.get() + y * shadowBytesPerRow + offset;
        if (intoShadow)
            std::memcpy(shadow, row, size);
        else
            std::memcpy(row, shadow, size);
    }
}

PixelTarget::Drawing::Drawing(PixelTarget& target, const PixelRect& touched, const PixelRect& clip)
    : _target(target)
    , _touched(touched)
{
    target.prepare();
    if (target._shadow)
        target.copyRows(touched, true);
    // cairo remembers that it has cleared a surface and would not look at what was written since.
    cairo_surface_mark_dirty(target._surface.get());
    target.setClip(clip);
}

PixelTarget::Drawing::~Drawing()
{
    cairo_surface_flush(_target._surface.get());
    if (_target._shadow)
        _target.copyRows(_touched, false);
    if (cairo_status(_target._cairo.get()) == CAIRO_STATUS_SUCCESS)
        return;
    // A failure stays with a cairo_t for good: the next operation gets a new one.
    CGLogMisuse("CGContext", cairo_status_to_string(cairo_status(_target._cairo.get())));
    _target._cairo.reset();
    _target._surface.reset();
}
