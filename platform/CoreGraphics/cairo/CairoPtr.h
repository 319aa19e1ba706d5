#pragma once

#include <memory>

// The library's own declarations, so that headers with an owned object do not need <cairo.h>.
using cairo_t = struct _cairo;
using cairo_surface_t = struct _cairo_surface;

/// Releases a cairo object.
struct CairoDeleter {
    void operator()(cairo_t* cairo) const;
    void operator()(cairo_surface_t* surface) const;
};

/// Owns a reference to a cairo object.
template <class T> using CairoPtr = std::unique_ptr<T, CairoDeleter>;
