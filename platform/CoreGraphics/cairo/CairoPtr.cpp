#include "CoreGraphics/cairo/CairoPtr.h"

#include <cairo.h>

void CairoDeleter::operator()(cairo_t* cairo) const
{
    cairo_destroy(cairo);
}

void CairoDeleter::operator()(cairo_surface_t* surface) const
{
    cairo_surface_destroy(surface);
}
