#pragma once

#include <cairo.h>

#include <memory>

/// Gives a cairo object back.
struct CairoDeleter {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};

/// Owns a cairo object.
template <class T> using CairoPtr = std::unique_ptr<T, CairoDeleter>;
